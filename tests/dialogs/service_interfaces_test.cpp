#include "dialogs/service_interfaces.h"

#include <gtest/gtest.h>

#include <utility>

#include "dialogs/toolbox.h"

namespace demovex {
namespace {

TEST(ServiceInterfaces, DefaultBodiesDoNothingAndAnswerNothing) {
    IFeedback feedback;
    EXPECT_FALSE(feedback.SetText(L"Lade ..."));
    EXPECT_FALSE(feedback.SetText(L"Lade ...", 2));
    EXPECT_FALSE(feedback.SetProgress(0.5F));
    EXPECT_FALSE(feedback.SetProgress(0.5F, 1));
    IUserInteraction interaction;
    std::wstring prompt = L"Weiter?";
    EXPECT_EQ(interaction.MsgBox(prompt), 0);
    EXPECT_EQ(interaction.MsgBox(prompt, 4, L"Titel", L"x.hlp", 7), 0);
    EXPECT_EQ(prompt, L"Weiter?");
    IFileSystemOperation files;
    std::wstring source = L"C:\\a";
    std::wstring target = L"C:\\b";
    files.Copy(source, target);
    files.Delete(source);
    files.MakeDirectory(target);
    files.KillDirectory(target);
    EXPECT_EQ(source, L"C:\\a");
    EXPECT_EQ(target, L"C:\\b");
}

TEST(ServiceInterfaces, AnImplementerOverridesWhatItSupports) {
    struct OnlyText : IFeedback {
        std::wstring text;
        bool SetText(std::wstring newText, std::int32_t) override {
            text = std::move(newText);
            return true;
        }
    } only_text;
    IFeedback& feedback = only_text;
    EXPECT_TRUE(feedback.SetText(L"Lade ..."));
    EXPECT_FALSE(feedback.SetProgress(1.0F));
    EXPECT_EQ(only_text.text, L"Lade ...");
}

// An object that counts its references, and a reference that does the counting.
struct Counted {
    int references = 0;
};
class CountedRef {
  public:
    CountedRef() = default;
    explicit CountedRef(Counted& object) : object_(&object) { ++object_->references; }
    CountedRef(const CountedRef& other) : object_(other.object_) {
        if (object_ != nullptr) ++object_->references;
    }
    CountedRef& operator=(const CountedRef&) = delete;
    ~CountedRef() {
        if (object_ != nullptr) --object_->references;
    }
    const Counted* get() const { return object_; }

  private:
    Counted* object_ = nullptr;
};

TEST(Toolbox, ARawCopyLeavesTheOwnersCountAloneFromSettingToDestroying) {
    Counted owner;
    {
        const CountedRef own(owner);
        EXPECT_EQ(owner.references, 1);
        {
            CountedRef field;
            Toolbox::CopyReferenceRaw(own, field);
            EXPECT_EQ(field.get(), &owner);
            EXPECT_EQ(owner.references, 1);
            Toolbox::CopyReferenceRaw(CountedRef(), field);
            EXPECT_EQ(field.get(), nullptr);
        }
        EXPECT_EQ(owner.references, 1);
    }
    EXPECT_EQ(owner.references, 0);
}

TEST(Toolbox, AnEmptyReferenceCopiedOverACountedOneMakesItsReleaseANoOp) {
    Counted owner;
    {
        CountedRef temporary(owner);
        Toolbox::CopyReferenceRaw(CountedRef(), temporary);
    }
    EXPECT_EQ(owner.references, 1);
}

TEST(Toolbox, PlainPointersAreReferencesToo) {
    int number = 5;
    int* const source = &number;
    int* target = nullptr;
    Toolbox::CopyReferenceRaw<int*>(source, target);
    EXPECT_EQ(target, &number);
}

}  // namespace
}  // namespace demovex
