#include "win/picture_file.h"

#include <olectl.h>

#include <new>

#include "com/guard.h"
#include "com/wide_text.h"
#include "common/picture_header.h"
#include "common/run_time_error.h"
#include "win/handles.h"

namespace qvx {

ComPtr<IPictureDisp> LoadPictureFile(const Text& path) {
    constexpr int fileNotFound = 53;
    constexpr int invalidPicture = 481;
    constexpr LONGLONG largest = 256 << 20;
    const auto fail = [&] { throw RunTimeError(fileNotFound, u"cannot read \"" + path + u"\""); };
    const HANDLE handle = CreateFileW(Wide(path), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE) fail();
    const UniqueKernelObject owner(handle);
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(handle, &size) || size.QuadPart > largest) fail();
    const auto bytes = static_cast<DWORD>(size.QuadPart);
    UniqueGlobal memory(GlobalAlloc(GMEM_MOVEABLE, bytes ? bytes : 1));
    if (!memory) throw std::bad_alloc();
    {
        const GlobalLockScope<std::uint8_t> lock(memory.Get());
        DWORD count = 0;
        if (!ReadFile(handle, lock.Get(), bytes, &count, nullptr) || count != bytes) fail();
        if (!MayDecodePicture({lock.Get(), bytes})) throw RunTimeError(invalidPicture, u"Invalid picture");
    }
    ComPtr<IStream> stream;
    Check(CreateStreamOnHGlobal(memory.Get(), TRUE, stream.put()));
    memory.Detach();  // the stream owns it now
    ComPtr<IPictureDisp> picture;
    Check(OleLoadPicture(stream.get(), static_cast<LONG>(bytes), FALSE, IID_IPictureDisp, picture.put_void()));
    return picture;
}

}  // namespace qvx
