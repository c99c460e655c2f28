#include "controls/grid/page_target_win32.h"

#include <string>

#include "com/wide_text.h"
#include "common/number_text.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "controls/grid/export_file_win32.h"

namespace qvx::grid {
namespace {

[[noreturn]] void ThrowPrinterError() { throw RunTimeError(errors::printerError, u"Printer error"); }

// A4 in hundredths of a millimetre.
constexpr Size pageSize{21000, 29700};

}  // namespace

void PageTarget::SetPaper(Dpi dpi, const Rect& sheet, Size printable) {
    dpi_ = dpi;
    // Margins of 15 mm, unless the printer needs wider ones.
    const int across = ScaleRounded(dpi.x, 15, 25);
    const int down = ScaleRounded(dpi.y, 15, 25);
    room_ = sheet.Inflated(-across, -down).Intersect({0, 0, printable.width, printable.height});
}

UniqueMemoryDc PrinterNamed(const Text& name) {
    UniqueMemoryDc dc(CreateDCW(nullptr, Wide(name), nullptr, nullptr));
    if (!dc) ThrowPrinterError();
    return dc;
}

PrinterPages::PrinterPages(UniqueMemoryDc dc, const Text& title, const Text& fileName)
    : dc_(std::move(dc)), fileName_(fileName.empty() ? Text() : CheckedTarget(fileName)) {
    const auto ask = [this](int index) { return GetDeviceCaps(dc_.Get(), index); };
    const Point corner{-ask(PHYSICALOFFSETX), -ask(PHYSICALOFFSETY)};
    SetPaper({ask(LOGPIXELSX), ask(LOGPIXELSY)},
             {corner.x, corner.y, corner.x + ask(PHYSICALWIDTH), corner.y + ask(PHYSICALHEIGHT)},
             {ask(HORZRES), ask(VERTRES)});
    DOCINFOW document{};
    document.cbSize = sizeof document;
    document.lpszDocName = Wide(title);
    document.lpszOutput = fileName_.empty() ? nullptr : Wide(fileName_);
    started_ = StartDocW(dc_.Get(), &document) > 0;
    if (started_) return;
    const DWORD code = GetLastError();
    if (code == ERROR_CANCELLED || code == ERROR_PRINT_CANCELLED) return;
    if (code != ERROR_SUCCESS && !fileName_.empty()) ThrowForSystemError(code);
    ThrowPrinterError();
}

PrinterPages::~PrinterPages() {
    if (!started_) return;
    AbortDoc(dc_.Get());
    if (!fileName_.empty()) DeleteFileW(Wide(fileName_));
}

HDC PrinterPages::Begin() {
    if (StartPage(dc_.Get()) <= 0) ThrowPrinterError();
    return dc_.Get();
}

void PrinterPages::End() {
    if (EndPage(dc_.Get()) <= 0) ThrowPrinterError();
}

void PrinterPages::Finish() {
    if (EndDoc(dc_.Get()) <= 0) ThrowPrinterError();
    started_ = false;
}

MetafilePages::MetafilePages() {
    const WindowDc screen(nullptr);
    const auto pixels = [&](int size, int millimetres, int resolution) {
        return ScaleRounded(size, GetDeviceCaps(screen.Get(), resolution),
                            100 * std::max(1, GetDeviceCaps(screen.Get(), millimetres)));
    };
    const Size sheet{pixels(pageSize.width, HORZSIZE, HORZRES), pixels(pageSize.height, VERTSIZE, VERTRES)};
    SetPaper({pixels(2540, HORZSIZE, HORZRES), pixels(2540, VERTSIZE, VERTRES)}, {0, 0, sheet.width, sheet.height},
             sheet);
}

MetafilePages::~MetafilePages() {
    if (dc_) DeleteEnhMetaFile(CloseEnhMetaFile(dc_));
}

HDC MetafilePages::Begin() {
    const RECT frame{0, 0, pageSize.width, pageSize.height};
    page_.Reset();
    // A page that could not be drawn completely is dropped.
    if (dc_) DeleteEnhMetaFile(CloseEnhMetaFile(dc_));
    dc_ = CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
    if (!dc_) ThrowForSystemError(GetLastError());
    return dc_;
}

void MetafilePages::End() {
    page_.Reset(CloseEnhMetaFile(std::exchange(dc_, nullptr)));
    if (!page_) ThrowForSystemError(ERROR_NOT_ENOUGH_MEMORY);
}

PageFiles::PageFiles(TextView fileName) {
    constexpr std::size_t length = 4;  // of ".emf"
    const std::size_t stem = fileName.size() - std::min(fileName.size(), length);
    suffix_ = fileName.substr(stem);
    if (stem == 0 || !EqualNoCase(suffix_, u".emf"))
        throw RunTimeError(errors::invalidProcedureCall, u"The file name must end in .emf");
    stem_ = fileName.substr(0, stem);
}

PageFiles::~PageFiles() {
    while (pages_ > finished_) DeleteFileW(Wide(Unfinished(pages_--)));
}

Text PageFiles::NameOf(int page) const { return stem_ + u"-" + IntegerToText(page) + suffix_; }

HDC PageFiles::Begin() {
    CheckedTarget(NameOf(pages_ + 1));
    return MetafilePages::Begin();
}

void PageFiles::End() {
    MetafilePages::End();
    std::string bytes(GetEnhMetaFileBits(Page(), 0, nullptr), '\0');
    if (GetEnhMetaFileBits(Page(), static_cast<UINT>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data())) == 0)
        ThrowForSystemError(ERROR_NOT_ENOUGH_MEMORY);
    ReplacingExport file(Unfinished(pages_ + 1));
    file.Write(bytes);
    file.Finish();
    ++pages_;
}

void PageFiles::Finish() {
    for (; finished_ < pages_; ++finished_) {
        if (!RenameOver(Unfinished(finished_ + 1), NameOf(finished_ + 1))) ThrowForSystemError(GetLastError());
    }
}

}  // namespace qvx::grid
