// The editor of an image list: its pictures with their keys, in order.
#pragma once

#include <ocidl.h>

#include <functional>
#include <map>

#include "com/pointer.h"
#include "designer/document/image_edit.h"
#include "designer/editors/editor_dialog.h"

namespace qvx::host::designer {

class ImageEditor final : public EditorDialog {
  public:
    // `folder` is the form's; `chooseFile` asks for the file of a picture.
    ImageEditor(std::vector<ImageLine> images, Text folder, std::function<Text(HWND owner)> chooseFile);
    const std::vector<ImageLine>& Images() const { return images_; }

  protected:
    void Build() override;
    void FollowResolution() override;
    void OnCommand(int id, int notification) override;
    bool Accept() override;
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    // The controls' identifiers.
    enum Id { list = 100, key, tag, file, preview, add, remove, up, down };

    void ShowList(std::size_t selected);
    void ShowImage();
    void DrawItem(const DRAWITEMSTRUCT& draw);
    void DrawPreview(const DRAWITEMSTRUCT& draw);
    void AddFromFile();
    IPicture* PictureOf(const ImageLine& image);
    void DrawPicture(HDC dc, IPicture* picture, const Rect& area);

    std::vector<ImageLine> images_;
    Text folder_;
    std::function<Text(HWND)> chooseFile_;
    std::map<Text, ComPtr<IPicture>> pictures_;  // by file; null for what cannot be read
    std::size_t current_ = 0;
    bool showing_ = false;
};

}  // namespace qvx::host::designer
