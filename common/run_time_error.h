// A run-time error as hosts know it: a number and a description, which are passed on together up to the automation
// interfaces. Copying an error never fails, and neither does creating one from a literal, so that errors can be
// reported when memory has run out.
#pragma once

#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "common/text.h"

namespace qvx {

class RunTimeError : public std::exception {
  public:
    RunTimeError(int number, Text description)
        : number_(number), made_(std::make_shared<const Text>(std::move(description))), description_(*made_) {}
    // For a description that is never freed, such as a literal.
    RunTimeError(int number, const char16_t* description) noexcept : number_(number), description_(description) {}
    int Number() const noexcept { return number_; }
    // Valid for as long as this error or a copy of it exists.
    TextView Description() const noexcept { return description_; }
    const char* what() const noexcept override { return "run-time error"; }

  private:
    int number_;
    std::shared_ptr<const Text> made_;  // null for a literal
    TextView description_;
};

namespace errors {
constexpr int invalidProcedureCall = 5;
constexpr int overflow = 6;
constexpr int outOfMemory = 7;
constexpr int subscriptOutOfRange = 9;
constexpr int typeMismatch = 13;
constexpr int fileNotFound = 53;
constexpr int fileAlreadyExists = 58;
constexpr int diskFull = 61;
constexpr int deviceUnavailable = 68;
constexpr int permissionDenied = 70;
constexpr int pathFileAccess = 75;
constexpr int pathNotFound = 76;
constexpr int objectUnloaded = 364;
constexpr int invalidPropertyValue = 380;
constexpr int invalidPropertyArrayIndex = 381;
constexpr int setNotSupportedAtRunTime = 382;
constexpr int setNotPermitted = 387;
constexpr int getNotSupportedAtRunTime = 393;
constexpr int keyAlreadyExists = 457;
constexpr int printerError = 482;
constexpr int fixedCountTooLarge = 30001;
constexpr int invalidRowValue = 30009;
constexpr int invalidColValue = 30010;
constexpr int lastRowRemoval = 30015;
}  // namespace errors

// Returns the number and description with which the current exception is passed on; for use inside a catch block.
inline RunTimeError CurrentError() noexcept {
    try {
        throw;
    } catch (const RunTimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return {errors::outOfMemory, u"Out of memory"};
    } catch (...) {
        return {errors::invalidProcedureCall, u"Invalid procedure call or argument"};
    }
}

}  // namespace qvx
