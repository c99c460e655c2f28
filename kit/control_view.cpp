// A control as a picture: what containers draw, print or hit-test themselves.
#include "kit/control_base.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx {

STDMETHODIMP ControlBase::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC dc, LPCRECTL bounds, LPCRECTL,
                               BOOL(CALLBACK*)(ULONG_PTR), ULONG_PTR) {
    return Guard([&]() -> HRESULT {
        if (aspect != DVASPECT_CONTENT && aspect != DVASPECT_OPAQUE && aspect != DVASPECT_DOCPRINT)
            return DV_E_DVASPECT;
        if (!dc) return E_INVALIDARG;
        EnsureSize();
        const Size size = PixelSize();
        if (size.width <= 0 || size.height <= 0) return S_OK;
        // A control that has never been shown does not know its size yet.
        if (!WindowHandle()) OnResize(size);
        const SavedDc saved(dc);
        if (bounds) {
            // The picture is drawn in the control's own pixels; the device scales it into the bounds.
            RECT target{bounds->left, bounds->top, bounds->right, bounds->bottom};
            if (GetDeviceCaps(dc, TECHNOLOGY) != DT_METAFILE) LPtoDP(dc, reinterpret_cast<POINT*>(&target), 2);
            SetMapMode(dc, MM_ANISOTROPIC);
            SetWindowOrgEx(dc, 0, 0, nullptr);
            SetWindowExtEx(dc, size.width, size.height, nullptr);
            SetViewportOrgEx(dc, target.left, target.top, nullptr);
            SetViewportExtEx(dc, target.right - target.left, target.bottom - target.top, nullptr);
        }
        GdiSurface surface(dc, WindowDpi(WindowHandle()));
        DrawControl(surface, {0, 0, size.width, size.height});
        return S_OK;
    });
}

// The control draws with the system's palette.
STDMETHODIMP ControlBase::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** colors) {
    if (!colors) return E_POINTER;
    *colors = nullptr;
    return S_FALSE;
}

// A control draws its current state; it keeps no frozen picture of an earlier one.
STDMETHODIMP ControlBase::Freeze(DWORD, LONG, void*, DWORD*) { return E_NOTIMPL; }
STDMETHODIMP ControlBase::Unfreeze(DWORD) { return E_NOTIMPL; }

STDMETHODIMP ControlBase::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
    viewSink_ = ComPtr<IAdviseSink>(sink);
    viewAspects_ = aspects;
    viewFlags_ = flags;
    if (sink && flags & ADVF_PRIMEFIRST) ViewChanged();
    return S_OK;
}

STDMETHODIMP ControlBase::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
    if (aspects) *aspects = viewAspects_;
    if (flags) *flags = viewFlags_;
    if (sink) *sink = viewSink_.copy();
    return S_OK;
}

STDMETHODIMP ControlBase::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, LPSIZEL size) {
    return GetExtent(aspect, size);
}

STDMETHODIMP ControlBase::GetRect(DWORD aspect, LPRECTL area) {
    SIZEL size{};
    const HRESULT got = GetExtent(aspect, &size);
    if (FAILED(got)) return got;
    if (!area) return E_POINTER;
    // The unit is 1/100 millimetre, and y grows upward.
    *area = {0, 0, size.cx, -size.cy};
    return S_OK;
}

STDMETHODIMP ControlBase::GetViewStatus(DWORD* status) {
    if (!status) return E_POINTER;
    *status = VIEWSTATUS_OPAQUE | VIEWSTATUS_SOLIDBKGND;
    return S_OK;
}

STDMETHODIMP ControlBase::QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT point, LONG, DWORD* result) {
    if (!bounds || !result) return E_POINTER;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    *result = PtInRect(bounds, point) ? HITRESULT_HIT : HITRESULT_OUTSIDE;
    return S_OK;
}

STDMETHODIMP ControlBase::QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT area, LONG, DWORD* result) {
    if (!bounds || !area || !result) return E_POINTER;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    RECT common{};
    *result = IntersectRect(&common, bounds, area) ? HITRESULT_HIT : HITRESULT_OUTSIDE;
    return S_OK;
}

STDMETHODIMP ControlBase::GetNaturalExtent(DWORD aspect, LONG, DVTARGETDEVICE*, HDC, DVEXTENTINFO* extent,
                                           LPSIZEL size) {
    if (!extent || !size) return E_POINTER;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    // Any size suits a control, so it proposes the one that the container asks about.
    if (extent->dwExtentMode != DVEXTENT_INTEGRAL) return GetExtent(aspect, size);
    *size = extent->sizelProposed;
    return S_OK;
}

}  // namespace qvx
