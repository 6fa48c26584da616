#include "base/error.h"

#include <gtest/gtest.h>

#include <exception>
#include <map>
#include <new>
#include <optional>
#include <string>

namespace demovex {
namespace {

// What hosts and users read; one wording for each number.
TEST(StandardDescription, IsTheClassicWordingOfTheNumber) {
    const std::map<std::int32_t, std::wstring> wording = {
        {5, L"Invalid procedure call or argument"},
        {6, L"Overflow"},
        {7, L"Out of memory"},
        {9, L"Subscript out of range"},
        {11, L"Division by zero"},
        {13, L"Type mismatch"},
        {52, L"Bad file name or number"},
        {53, L"File not found"},
        {57, L"Device I/O error"},
        {61, L"Disk full"},
        {67, L"Too many files"},
        {70, L"Permission denied"},
        {75, L"Path/File access error"},
        {76, L"Path not found"},
        {91, L"Object variable or With block variable not set"},
        {482, L"Printer error"},
        {521, L"Can't open Clipboard"},
        {30016, L"Cannot remove last non-fixed row"},
    };
    for (const auto& [number, text] : wording) {
        EXPECT_EQ(StandardDescription(number), text) << number;
    }
    for (const std::int32_t number : {-1, 0, 1, 4, 8, 10, 14, 51, 54, 481, 32767}) {
        EXPECT_EQ(StandardDescription(number), L"Application-defined or object-defined error")
            << number;
    }
}

TEST(Errors, ARunTimeErrorCarriesItsStandardDescriptionAndNoSource) {
    try {
        RaiseRuntimeError(61);
        FAIL() << "nothing was raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), 61);
        EXPECT_EQ(error.source(), L"");
        EXPECT_EQ(error.description(), L"Disk full");
    }
}

TEST(Errors, AnErrorOfOurOwnCarriesMinusOneAndSaysWhere) {
    try {
        RaiseOwnError(L"Somewhere", L"Größe fehlt");
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), -1);
        EXPECT_EQ(error.source(), L"Somewhere");
        EXPECT_EQ(error.description(), L"Größe fehlt");
        EXPECT_STREQ(error.what(), "error -1: Gr??e fehlt") << "for debuggers: plain characters";
    }
}

// What CurrentError makes of what `raise` throws; the texts are copied while they last.
template <typename Raise>
Error Caught(Raise raise) {
    try {
        raise();
    } catch (...) {
        const CaughtError error = CurrentError();
        return {error.number, std::wstring(error.source), std::wstring(error.description)};
    }
    return {0, L"", L"nothing was raised"};
}

TEST(CurrentError, IsAnErrorAsItWasRaised) {
    const Error error = Caught([] { RaiseOwnError(L"Somewhere", L"Größe fehlt"); });
    EXPECT_EQ(error.number(), -1);
    EXPECT_EQ(error.source(), L"Somewhere");
    EXPECT_EQ(error.description(), L"Größe fehlt");
}

TEST(CurrentError, IsErrorSevenWhenMemoryRanOutAndFiveForAnythingElse) {
    const Error memory = Caught([] { throw std::bad_alloc(); });
    EXPECT_EQ(memory.number(), 7);
    EXPECT_EQ(memory.description(), L"Out of memory");
    for (const Error& other :
         {Caught([] { throw 4711; }), Caught([] { throw std::exception(); })}) {
        EXPECT_EQ(other.number(), 5);
        EXPECT_EQ(other.source(), L"");
        EXPECT_EQ(other.description(), L"Invalid procedure call or argument");
    }
}

TEST(FailureOf, SaysWhatAnErrorOrMemoryThatRanOutSaysAndLetsAnythingElsePass) {
    EXPECT_EQ(FailureOf([] {}), std::nullopt);
    EXPECT_EQ(FailureOf([] { RaiseRuntimeError(61); }), L"Disk full");
    EXPECT_EQ(FailureOf([] { throw std::bad_alloc(); }), L"Out of memory");
    EXPECT_THROW(static_cast<void>(FailureOf([] { throw 4711; })), int);
}

}  // namespace
}  // namespace demovex
