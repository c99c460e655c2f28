#include "designer/editors/image_editor_dialog.h"

#include <algorithm>

#include "common/number_text.h"
#include "host/form_pictures_object.h"
#include "host/picture_names.h"
#include "host/report_dialog.h"
#include "win/gdi_surface.h"
#include "win/window_text.h"

namespace qvx::host::designer {

namespace {

constexpr int rowHeight = 28;

}  // namespace

ImageEditor::ImageEditor(std::vector<ImageLine> images, Text folder, std::function<Text(HWND)> chooseFile)
    : EditorDialog(u"Image list editor", {560, 360}),
      images_(std::move(images)),
      folder_(std::move(folder)),
      chooseFile_(std::move(chooseFile)) {}

void ImageEditor::Build() {
    AddLabel(u"&Images:", {12, 10, 300, 26});
    Add(L"LISTBOX", u"Images",
        WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT,
        {12, 28, 300, 270}, list, WS_EX_CLIENTEDGE);
    SendMessageW(Item(list), LB_SETITEMHEIGHT, 0, Scaled(rowHeight));
    AddButton(u"&Add...", {12, 280, 78, 304}, add);
    AddButton(u"&Remove", {84, 280, 150, 304}, remove);
    AddButton(u"&Up", {156, 280, 222, 304}, up);
    AddButton(u"&Down", {228, 280, 300, 304}, down);
    AddLabel(u"&Key:", {316, 10, 548, 26});
    AddEdit({316, 28, 548, 50}, key);
    AddLabel(u"&Tag:", {316, 60, 548, 76});
    AddEdit({316, 78, 548, 100}, tag);
    AddLabel(u"&File:", {316, 110, 548, 126});
    AddEdit({316, 128, 548, 150}, file, ES_READONLY);
    Add(L"STATIC", u"Preview", SS_OWNERDRAW, {316, 164, 548, 304}, preview, WS_EX_CLIENTEDGE);
    ShowList(0);
}

void ImageEditor::FollowResolution() {
    EditorDialog::FollowResolution();
    SendMessageW(Item(list), LB_SETITEMHEIGHT, 0, Scaled(rowHeight));
}

IPicture* ImageEditor::PictureOf(const ImageLine& image) {
    if (image.file.empty()) return nullptr;
    const auto found = pictures_.find(image.file);
    if (found != pictures_.end()) return found->second.get();
    ComPtr<IPicture>& picture = pictures_[image.file];
    try {
        picture = LoadPictureFile(folder_, image.file).As<IPicture>();
    } catch (...) {
        // The picture is shown empty, and the list keeps its file.
    }
    return picture.get();
}

void ImageEditor::DrawPicture(HDC dc, IPicture* picture, const Rect& area) {
    if (!picture) return;
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    if (FAILED(picture->get_Width(&width)) || FAILED(picture->get_Height(&height)) || width <= 0 || height <= 0) return;
    // The picture is drawn in its own size, or smaller in its own proportions where there is no room.
    constexpr int himetric = 2540;
    Size size{std::max(ScaleRounded(width, Scaled(96), himetric), 1),
              std::max(ScaleRounded(height, Scaled(96), himetric), 1)};
    if (size.width > area.Width()) size = {area.Width(), ScaleRounded(size.height, area.Width(), size.width)};
    if (size.height > area.Height()) size = {ScaleRounded(size.width, area.Height(), size.height), area.Height()};
    const int x = area.left + (area.Width() - size.width) / 2;
    const int y = area.top + (area.Height() - size.height) / 2;
    picture->Render(dc, x, y, size.width, size.height, 0, height, width, -height, nullptr);
}

void ImageEditor::DrawItem(const DRAWITEMSTRUCT& draw) {
    if (draw.itemID >= images_.size()) return;
    const bool selected = (draw.itemState & ODS_SELECTED) != 0;
    const ImageLine& image = images_[draw.itemID];
    FillRect(draw.hDC, &draw.rcItem, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    const Rect row = FromRECT(draw.rcItem);
    const int side = row.Height() - 2 * Scaled(2);
    const Rect box{row.left + Scaled(4), row.top + Scaled(2), row.left + Scaled(4) + side, row.top + Scaled(2) + side};
    DrawPicture(draw.hDC, PictureOf(image), box);
    RECT text{box.right + Scaled(8), row.top, row.right, row.bottom};
    const SelectedObject font(draw.hDC, Font().Get());
    SetBkMode(draw.hDC, TRANSPARENT);
    SetTextColor(draw.hDC, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    const Text shown = IntegerToText(static_cast<int>(draw.itemID) + 1) + u"   " + image.key;
    DrawTextW(draw.hDC, Wide(shown), -1, &text, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    if (draw.itemState & ODS_FOCUS) DrawFocusRect(draw.hDC, &draw.rcItem);
}

void ImageEditor::DrawPreview(const DRAWITEMSTRUCT& draw) {
    FillRect(draw.hDC, &draw.rcItem, GetSysColorBrush(COLOR_WINDOW));
    if (current_ < images_.size()) {
        DrawPicture(draw.hDC, PictureOf(images_[current_]), FromRECT(draw.rcItem).Inflated(-4, -4));
    }
}

void ImageEditor::ShowList(std::size_t selected) {
    SendMessageW(Item(list), LB_RESETCONTENT, 0, 0);
    for (const ImageLine& image : images_) {
        SendMessageW(Item(list), LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(image.key)));
    }
    current_ = images_.empty() ? 0 : std::min(selected, images_.size() - 1);
    SendMessageW(Item(list), LB_SETCURSEL, images_.empty() ? static_cast<WPARAM>(-1) : current_, 0);
    ShowImage();
}

void ImageEditor::ShowImage() {
    showing_ = true;
    const bool there = current_ < images_.size();
    SetText(key, there ? images_[current_].key : Text());
    SetText(tag, there ? images_[current_].tag : Text());
    SetText(file, there ? images_[current_].file : Text());
    for (const int id : {key, tag, file, remove}) EnableWindow(Item(id), there);
    EnableWindow(Item(up), there && current_ > 0);
    EnableWindow(Item(down), there && current_ + 1 < images_.size());
    InvalidateRect(Item(preview), nullptr, TRUE);
    showing_ = false;
}

void ImageEditor::AddFromFile() {
    const Text chosen = chooseFile_(Handle());
    if (chosen.empty()) return;
    ImageLine image;
    image.file = RelativeTo(folder_, chosen);
    if (!PictureOf(image)) {
        MessageBoxW(Handle(), Wide(u"\"" + chosen + u"\" holds no picture that can be shown."), Wide(ProgramTitle()),
                    MB_OK | MB_ICONEXCLAMATION);
        return;
    }
    // The name of the file becomes the key unless it is taken.
    const std::size_t slash = chosen.find_last_of(u"\\/");
    const Text name = chosen.substr(slash == Text::npos ? 0 : slash + 1);
    image.key = name.substr(0, name.rfind(u'.'));
    std::vector<ImageLine> with = images_;
    with.push_back(image);
    if (DoubleKey(with)) image.key.clear();
    images_.push_back(std::move(image));
    ShowList(images_.size() - 1);
}

void ImageEditor::OnCommand(int id, int notification) {
    const auto swap = [&](std::size_t other) {
        std::swap(images_[current_], images_[other]);
        ShowList(other);
    };
    switch (id) {
        case list:
            if (notification != LBN_SELCHANGE) return;
            current_ = static_cast<std::size_t>(std::max<LRESULT>(SendMessageW(Item(list), LB_GETCURSEL, 0, 0), 0));
            ShowImage();
            return;
        case key:
        case tag:
            if (notification != EN_CHANGE || showing_ || current_ >= images_.size()) return;
            images_[current_].key = TextOf(key);
            images_[current_].tag = TextOf(tag);
            InvalidateRect(Item(list), nullptr, FALSE);
            return;
        case add:
            AddFromFile();
            return;
        case remove:
            if (current_ < images_.size()) images_.erase(images_.begin() + static_cast<std::ptrdiff_t>(current_));
            ShowList(current_);
            return;
        case up:
            if (current_ > 0) swap(current_ - 1);
            return;
        case down:
            if (current_ + 1 < images_.size()) swap(current_ + 1);
            return;
        default:
            return;
    }
}

bool ImageEditor::Accept() {
    const auto twice = DoubleKey(images_);
    if (!twice) return true;
    MessageBoxW(Handle(), Wide(u"The key \"" + *twice + u"\" is there twice."), Wide(ProgramTitle()),
                MB_OK | MB_ICONEXCLAMATION);
    return false;
}

LRESULT ImageEditor::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_MEASUREITEM) {
        reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)->itemHeight = static_cast<UINT>(Scaled(rowHeight));
        return TRUE;
    }
    if (message == WM_DRAWITEM) {
        const auto& draw = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        if (draw.CtlID == preview) {
            DrawPreview(draw);
        } else {
            DrawItem(draw);
        }
        return TRUE;
    }
    return EditorDialog::OnMessage(message, wParam, lParam);
}

}  // namespace qvx::host::designer
