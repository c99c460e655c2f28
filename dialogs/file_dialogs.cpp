#include "dialogs/file_dialogs.h"

namespace qvx {

namespace {

constexpr std::size_t fileBufferLength = 250;
// The stated length has always been five more than the buffer's; the code that runs the dialog allocates that much.
constexpr std::uint32_t fileBufferLengthStated = 255;

// Hides the read-only box (4); path (2048) and file (4096) must exist.
constexpr std::uint32_t openFileFlags = 6148;

}  // namespace

OpenFileRequest MakeOpenFileRequest(TextView title, TextView initialName) {
    using namespace std::string_view_literals;
    OpenFileRequest request;
    request.filter = u"Backup Files (*.qvx)\0*.qvx\0\0"sv;
    request.file = initialName.substr(0, fileBufferLength - 1);
    request.file.resize(fileBufferLength, u'\0');
    request.maxFile = fileBufferLengthStated;
    request.title = title;
    // This is a pattern, although the system expects a bare extension. It is kept, since it does not affect an
    // extension that the user types.
    request.defaultExtension = u"*.qvx";
    request.flags = openFileFlags;
    return request;
}

OpenFileRequest MakePictureFileRequest() {
    using namespace std::string_view_literals;
    constexpr std::uint32_t longestPath = 4096;
    OpenFileRequest request;
    request.filter = u"(Bitmaps)\0*.bmp\0(ICons)\0*.ico\0\0"sv;
    request.file.assign(longestPath, u'\0');
    request.maxFile = longestPath;
    request.flags = openFileFlags;
    return request;
}

Text ChosenFile(bool confirmed, TextView buffer) {
    const auto end = buffer.find(u'\0');
    return confirmed && end != TextView::npos ? Text(buffer.substr(0, end)) : Text();
}

}  // namespace qvx
