#include "util/RuntimeError.h"

#include <new>

namespace kv::util {

const wchar_t* errorText(int number) noexcept {
    switch (number) {
        case error_number::kInvalidProcedureCall:
            return L"Invalid procedure call or argument";
        case error_number::kOverflow:
            return L"Overflow";
        case error_number::kOutOfMemory:
            return L"Out of memory";
        case error_number::kSubscriptOutOfRange:
            return L"Subscript out of range";
        case error_number::kTypeMismatch:
            return L"Type mismatch";
        case error_number::kInternal:
            return L"Internal error";
        case error_number::kFileNotFound:
            return L"File not found";
        case error_number::kPathFileAccess:
            return L"Path/File access error";
        case error_number::kInvalidPicture:
            return L"Invalid picture";
        case error_number::kCannotOpenClipboard:
            return L"Can't open Clipboard";
        case error_number::kObjectNotSet:
            return L"Object variable or With block variable not set";
        case error_number::kInvalidPropertyValue:
            return L"Invalid property value";
        case error_number::kCannotCreateObject:
            return L"ActiveX component can't create object";
        case error_number::kObjectLacksMember:
            return L"Object doesn't support this property or method";
        case error_number::kAutomation:
            return L"Automation error";
        case error_number::kKeyInUse:
            return L"This key is already associated with an element of this collection";
        default:
            return L"Application-defined or object-defined error";
    }
}

RuntimeError currentError() noexcept {
    try {
        throw;
    } catch (const RuntimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return RuntimeError(error_number::kOutOfMemory);
    } catch (...) {
        return RuntimeError(error_number::kInternal);
    }
}

}  // namespace kv::util
