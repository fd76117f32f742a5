#include "ErrorNumbers.h"

#include "base/RuntimeError.h"
#include "host/dispatch/Errors.h"

namespace kestrel::tools {
namespace {

constexpr ErrorNumber kErrors[] = {
    {err::kInvalidCall, "the call is not possible, or an argument is out of range or names nothing"},
    {err::kOverflow, "a number is out of range"},
    {err::kOutOfMemory, "there is not enough memory"},
    {err::kSubscript, "a collection has no such element"},
    {err::kTypeMismatch, "a value has another type than the argument"},
    {err::kInternal, "an internal error"},
    {err::kFileNotFound, "a file does not exist"},
    {err::kDeviceIO, "a file cannot be read or written"},
    {err::kFileExists, "there is a file of that name"},
    {err::kDiskFull, "the disk is full"},
    {err::kPermissionDenied, "a file or folder is not accessible"},
    {err::kPathFileAccess, "a file or folder cannot be made or opened"},
    {err::kPathNotFound, "a folder does not exist"},
    {err::kObjectNotSet, "the object is Nothing, or does not exist any more"},
    {err::kInvalidUseOfNull, "Null where a value is expected"},
    {err::kInvalidPropertyValue, "the property does not have this value"},
    {err::kReadOnlyProperty, "the property is read-only"},
    {err::kWriteOnlyProperty, "the property is write-only"},
    {err::kObjectRequired, "a value where an object is expected"},
    {err::kCannotCreateObject, "there is no class of that name that hosts can create"},
    {err::kNoSuchMember, "the class has no member of that name"},
    {err::kNoSuchArgument, "the member has no argument of that name"},
    {err::kArgumentNotOptional, "an argument is missing"},
    {err::kNumberOfArguments, "there are too many or too few arguments"},
    {err::kDuplicateKey, "a collection has an element of that key"},
    {err::kNoSuchEvent, "the class has no event of that name"},
    {err::kInvalidPicture, "the file is not a picture of a known format, or is damaged"},
    {err::kWrongThread, "a call on another thread than that of the object"},
};

}  // namespace

std::span<const ErrorNumber> errorNumbers() { return kErrors; }

}  // namespace kestrel::tools
