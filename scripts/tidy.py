#!/usr/bin/env python3
"""Static analysis (clang-tidy) of the component's sources.

Portable sources are analysed as the native build compiles them, _win sources as the 32-bit Windows
build does. A source whose own text and included headers have not changed since it was last found
clean is passed over, so a second run is quick. Prints findings and exits 1 when there are any.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FLOORS = ("base", "containers", "params", "platform", "catalog", "grid", "dialogs", "basket",
          "client", "host", "tools")
STAMPS = ROOT / "build" / "tidy"
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.M)


def closure(path, seen):
    if path in seen or not path.exists():
        return seen
    seen[path] = text = path.read_bytes()
    for target in INCLUDE.findall(text.decode("utf-8", "replace")):
        for base in (ROOT, path.parent):
            if (base / target).exists():
                closure((base / target).resolve(), seen)
                break
    return seen


def digest(path):
    h = hashlib.sha256((ROOT / ".clang-tidy").read_bytes())
    seen = closure(path, {})
    for name in sorted(seen):
        h.update(seen[name])
    return h.hexdigest()


def database(preset):
    file = ROOT / "build" / preset / "compile_commands.json"
    if not file.exists():
        sys.exit(f"tidy: missing {file.relative_to(ROOT)} (configure the preset {preset} first)")
    return {pathlib.Path(e["file"]).resolve() for e in json.loads(file.read_text())}


def windows_arguments():
    """clang's arguments for reading the cross compiler's headers."""
    include = subprocess.run(["i686-w64-mingw32-g++-posix", "-print-file-name=include"],
                             capture_output=True, text=True, check=True).stdout.strip()
    cxx = pathlib.Path(include) / "c++"
    folders = [cxx, cxx / "i686-w64-mingw32", pathlib.Path("/usr/i686-w64-mingw32/include")]
    return ["--extra-arg=--target=i686-w64-mingw32"] + [
        f"--extra-arg=-isystem{folder}" for folder in folders]


def analyse(job):
    path, preset = job
    stamp = STAMPS / (str(path.relative_to(ROOT)).replace("/", "__") + ".ok")
    mark = digest(path)
    if stamp.exists() and stamp.read_text() == mark:
        return path, True, ""
    command = ["clang-tidy", "-quiet", "-p", str(ROOT / "build" / preset),
               "--extra-arg=-Wno-unknown-warning-option", "--extra-arg=-Qunused-arguments"]
    if preset == "win32":
        command += windows_arguments()
    run = subprocess.run(command + [str(path)], capture_output=True, text=True)
    if run.returncode == 0:
        stamp.write_text(mark)
        return path, False, ""
    return path, False, run.stdout + run.stderr


def main():
    STAMPS.mkdir(parents=True, exist_ok=True)
    jobs = []
    for preset, windows in (("native", False), ("win32", True)):
        for path in sorted(database(preset)):
            if not path.is_relative_to(ROOT) or path.suffix != ".cpp":
                continue
            relative = path.relative_to(ROOT)
            is_win = relative.stem.endswith("_win") or relative.parts[0] == "host"
            if relative.parts[0] in FLOORS and is_win == windows:
                jobs.append((path, preset))
    if not jobs:
        sys.exit("tidy: no sources found")
    failed = skipped = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for path, was_clean, findings in pool.map(analyse, jobs):
            skipped += was_clean
            if findings:
                failed += 1
                print(findings.replace(str(ROOT) + "/", ""))
    print(f"tidy: {len(jobs)} sources, {skipped} unchanged, {failed} with findings")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
