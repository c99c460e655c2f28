// The FlatBorder control: it gives the window that contains it a flat border.
#pragma once

#include "Qvx.h"
#include "controls/borders/window_border_win32.h"
#include "kit/invisible_control.h"

namespace qvx::borders {

class FlatBorderControl final : public InvisibleControl<_FlatBorder> {
  public:
    static const ControlClass classInfo;

    FlatBorderControl();

    const PropertyTable& Properties() override;

    STDMETHODIMP get_InnerBorder(OLE_COLOR* result) override;
    STDMETHODIMP put_InnerBorder(OLE_COLOR value) override;
    STDMETHODIMP get_OuterBorder(OLE_COLOR* result) override;
    STDMETHODIMP put_OuterBorder(OLE_COLOR value) override;

  protected:
    void Follow(bool working) override;
    void DrawPicture(Surface& surface, const Rect& area) override;

  private:
    ~FlatBorderControl() override = default;

    void Take(OleColor BorderColors::*color, OleColor value);

    BorderColors colors_;
    WindowBorder border_;
};

}  // namespace qvx::borders
