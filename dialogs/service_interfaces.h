// Services that a host or another component can supply to long-running work: progress, questions,
// acting on files. Nothing in this component implements or calls them. Every operation has an empty
// default body, so that an implementer overrides only what it supports.
#pragma once

#include <cstdint>
#include <string>

namespace demovex {

// Progress of an operation. `Level` is the nesting depth of the operation that reports, 0 the
// outermost; a percentage or other scale for the progress is agreed between the two sides.
class IFeedback {
  public:
    virtual ~IFeedback() = default;
    virtual bool SetText(std::wstring newText, std::int32_t Level = 0);
    virtual bool SetProgress(float newProgress, std::int32_t Level = 0);
};

// Questions to the user; `Buttons` and the answer are the system's message box codes.
class IUserInteraction {
  public:
    virtual ~IUserInteraction() = default;
    virtual std::int32_t MsgBox(std::wstring& Prompt, std::int32_t Buttons = 0,
                                std::wstring Title = {}, std::wstring HelpFile = {},
                                std::int32_t Context = 0);
};

class IFileSystemOperation {
  public:
    virtual ~IFileSystemOperation() = default;
    virtual void Copy(std::wstring& Source, std::wstring& Target);
    virtual void Delete(std::wstring& Path);
    virtual void MakeDirectory(std::wstring& Path);
    virtual void KillDirectory(std::wstring& Path);
};

}  // namespace demovex
