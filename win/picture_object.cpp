#include "win/picture_object.h"

#include <olectl.h>

#include "common/himetric.h"

namespace qvx {

PictureObject::PictureObject(IUnknown* picture) : picture_(Query<IPicture>(picture)) {
    SHORT type = PICTYPE_NONE;
    if (picture_ && (FAILED(picture_->get_Type(&type)) || type == PICTYPE_NONE || type == PICTYPE_UNINITIALIZED)) {
        picture_.reset();
    }
}

IPictureDisp* PictureObject::Object() const { return picture_.As<IPictureDisp>().detach(); }

Size PictureObject::PixelSize(Dpi dpi) const {
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    if (!picture_ || FAILED(picture_->get_Width(&width)) || FAILED(picture_->get_Height(&height))) return {};
    return {ScaleRounded(width, dpi.x, himetricPerInch), ScaleRounded(height, dpi.y, himetricPerInch)};
}

void PictureObject::Draw(HDC dc, const Rect& area) const {
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    if (!picture_ || area.Empty() || FAILED(picture_->get_Width(&width)) || FAILED(picture_->get_Height(&height))) {
        return;
    }
    // The vertical axis of a picture's own coordinates points upwards.
    const RECT bounds = ToRECT(area);
    picture_->Render(dc, area.left, area.top, area.Width(), area.Height(), 0, height, width, -height, &bounds);
}

}  // namespace qvx
