// Files and the console where there is no Windows.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "tools/files.h"

namespace demovex::tools {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void Fail(const std::string& path) {
    throw std::runtime_error(path + ": " + std::strerror(errno));
}

// A file's name without links, so that a link stays one.
std::string RealPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real != nullptr ? real.get() : path;
}

// The rights that a new file gets.
mode_t NewFileMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

std::string ReadFile(const std::string& path) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) Fail(path);
    std::string bytes;
    struct stat about {};
    if (fstat(fileno(file.get()), &about) == 0 && about.st_size > 0) {
        bytes.reserve(static_cast<std::size_t>(about.st_size));
    }
    char block[65536];
    while (const std::size_t count = std::fread(block, 1, sizeof block, file.get())) {
        bytes.append(block, count);
    }
    if (std::ferror(file.get()) != 0) Fail(path);
    return bytes;
}

void PlaceFile(const std::string& path, std::string_view bytes) {
    const std::string target = RealPath(path);
    const std::size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : target.substr(0, slash + 1);
    struct stat about {};
    const bool exists = stat(target.c_str(), &about) == 0;
    if (exists && !S_ISREG(about.st_mode)) {
        throw std::runtime_error(path + ": is no ordinary file");
    }
    if (exists && (about.st_mode & 0222) == 0) throw std::runtime_error(path + ": is read-only");
    std::string temporary = target + ".XXXXXX";
    const int file = mkstemp(temporary.data());
    if (file < 0) Fail(path);
    bool good = true;
    while (good && !bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
        good = written > 0 || (written < 0 && errno == EINTR);
    }
    good = good && fchmod(file, exists ? about.st_mode & 07777 : NewFileMode()) == 0;
    good = good && fsync(file) == 0;
    // the owner is kept where the system lets us
    if (exists && fchown(file, about.st_uid, about.st_gid) != 0) errno = 0;
    int failure = good ? 0 : errno;
    if (close(file) != 0 && failure == 0) failure = errno;
    if (failure == 0 && rename(temporary.c_str(), target.c_str()) != 0) failure = errno;
    if (failure != 0) {
        unlink(temporary.c_str());
        errno = failure;
        Fail(path);
    }
    // the new name reaches the disk, too
    const int directory = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0) {
        fsync(directory);
        close(directory);
    }
}

std::vector<std::string> Arguments(int argc, char** argv) {
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

ConsoleInUtf8::ConsoleInUtf8() = default;
ConsoleInUtf8::~ConsoleInUtf8() {
    before_ = 0;
}

bool ErrorOutputIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

}  // namespace demovex::tools
