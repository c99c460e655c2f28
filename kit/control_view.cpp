// A control as a picture: what containers draw, print or hit-test themselves.
#include "kit/control_base.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx {

namespace {

// Maps the control's own pixels to the bounds, so that the device scales the picture. `whole` is what the container's
// metafile covers.
void FitInto(HDC dc, const RECTL& bounds, const RECTL& whole, Size size) {
    const auto width = static_cast<int>(bounds.right - bounds.left);
    const auto height = static_cast<int>(bounds.bottom - bounds.top);
    if (GetObjectType(dc) == OBJ_METADC) {
        // Whoever plays such a metafile chooses its place on the device; only the coordinates in it belong to it.
        if (width == 0 || height == 0) return;
        const auto across = [&](LONG length) { return MulDiv(static_cast<int>(length), size.width, width); };
        const auto down = [&](LONG length) { return MulDiv(static_cast<int>(length), size.height, height); };
        SetWindowOrgEx(dc, across(whole.left - bounds.left), down(whole.top - bounds.top), nullptr);
        SetWindowExtEx(dc, across(whole.right - whole.left), down(whole.bottom - whole.top), nullptr);
        return;
    }
    if (GetGraphicsMode(dc) == GM_ADVANCED) {
        // The world may also be turned, which no rectangle of the device can express.
        const XFORM fit{static_cast<float>(width) / static_cast<float>(size.width),
                        0,
                        0,
                        static_cast<float>(height) / static_cast<float>(size.height),
                        static_cast<float>(bounds.left),
                        static_cast<float>(bounds.top)};
        ModifyWorldTransform(dc, &fit, MWT_LEFTMULTIPLY);
        return;
    }
    RECT target{bounds.left, bounds.top, bounds.right, bounds.bottom};
    LPtoDP(dc, reinterpret_cast<POINT*>(&target), 2);
    SetMapMode(dc, MM_ANISOTROPIC);
    SetWindowOrgEx(dc, 0, 0, nullptr);
    SetWindowExtEx(dc, size.width, size.height, nullptr);
    SetViewportOrgEx(dc, target.left, target.top, nullptr);
    SetViewportExtEx(dc, target.right - target.left, target.bottom - target.top, nullptr);
}

}  // namespace

STDMETHODIMP ControlBase::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC dc, LPCRECTL bounds,
                               LPCRECTL windowBounds, BOOL(CALLBACK*)(ULONG_PTR), ULONG_PTR) {
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
            FitInto(dc, *bounds, windowBounds ? *windowBounds : *bounds, size);
            IntersectClipRect(dc, 0, 0, size.width, size.height);
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
