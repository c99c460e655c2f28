// A control as data: the pictures of it that containers copy, and keep for when the control is not there.
#include <array>

#include "com/enumerator.h"
#include "kit/control_base.h"
#include "win/handles.h"

namespace qvx {

namespace {

constexpr std::array offeredFormats{
    FORMATETC{CF_ENHMETAFILE, nullptr, DVASPECT_CONTENT, -1, TYMED_ENHMF},
    FORMATETC{CF_METAFILEPICT, nullptr, DVASPECT_CONTENT, -1, TYMED_MFPICT},
};

struct CopyFormat {
    static void Out(const FORMATETC& from, FORMATETC* to) { *to = from; }
};

HRESULT FindFormat(const FORMATETC* wanted) {
    if (!wanted) return E_POINTER;
    for (const FORMATETC& offered : offeredFormats) {
        if (wanted->cfFormat != offered.cfFormat) continue;
        if (wanted->dwAspect != DVASPECT_CONTENT && wanted->dwAspect != DVASPECT_DOCPRINT) return DV_E_DVASPECT;
        if (wanted->lindex != -1) return DV_E_LINDEX;
        return wanted->tymed & offered.tymed ? S_OK : DV_E_TYMED;
    }
    return DV_E_FORMATETC;
}

RECTL AllOf(Size size) { return {0, 0, size.width, size.height}; }

// `draw` receives a device context and the bounds on it.
template <typename Draw>
HENHMETAFILE EnhancedPicture(const SIZEL& extent, Draw draw) {
    constexpr int himetricPerMillimetre = 100;
    const HDC screen = GetDC(nullptr);
    const auto metric = [&](int index) { return GetDeviceCaps(screen, index); };
    const int across = metric(HORZSIZE) * himetricPerMillimetre;
    const int down = metric(VERTSIZE) * himetricPerMillimetre;
    // The picture ends where its frame does: both are whole pixels of the device, whose physical size has nothing to do
    // with its dots per inch.
    const Size pixels{MulDiv(extent.cx, metric(HORZRES), across), MulDiv(extent.cy, metric(VERTRES), down)};
    const RECT frame{0, 0, MulDiv(pixels.width, across, metric(HORZRES)), MulDiv(pixels.height, down, metric(VERTRES))};
    const HDC dc = CreateEnhMetaFileW(screen, nullptr, &frame, nullptr);
    ReleaseDC(nullptr, screen);
    if (!dc) throw ComError(E_OUTOFMEMORY);
    const HRESULT drawn = draw(dc, AllOf(pixels));
    const HENHMETAFILE picture = CloseEnhMetaFile(dc);
    if (FAILED(drawn)) DeleteEnhMetaFile(picture);
    Check(drawn);
    return picture;
}

template <typename Draw>
HGLOBAL OldPicture(const SIZEL& extent, Size pixels, Draw draw) {
    UniqueGlobal memory(GlobalAlloc(GMEM_MOVEABLE, sizeof(METAFILEPICT)));
    const HDC dc = memory ? CreateMetaFileW(nullptr) : nullptr;
    if (!dc) throw ComError(E_OUTOFMEMORY);
    const HRESULT drawn = draw(dc, AllOf(pixels));
    const HMETAFILE file = CloseMetaFile(dc);
    if (FAILED(drawn)) DeleteMetaFile(file);
    Check(drawn);
    auto* picture = static_cast<METAFILEPICT*>(GlobalLock(memory.Get()));
    *picture = {MM_ANISOTROPIC, extent.cx, extent.cy, file};
    GlobalUnlock(memory.Get());
    return memory.Detach();
}

}  // namespace

STDMETHODIMP ControlBase::GetData(FORMATETC* format, STGMEDIUM* medium) {
    return Guard([&]() -> HRESULT {
        if (!medium) return E_POINTER;
        *medium = {};
        Check(FindFormat(format));
        EnsureSize();
        const auto draw = [&](HDC dc, const RECTL& bounds) {
            return Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, &bounds, nullptr, 0);
        };
        if (format->cfFormat == CF_ENHMETAFILE) {
            medium->hEnhMetaFile = EnhancedPicture(extent_.Himetric(), draw);
            medium->tymed = TYMED_ENHMF;
        } else {
            medium->hMetaFilePict = OldPicture(extent_.Himetric(), PixelSize(), draw);
            medium->tymed = TYMED_MFPICT;
        }
        return S_OK;
    });
}

STDMETHODIMP ControlBase::QueryGetData(FORMATETC* format) { return FindFormat(format); }

// A picture is always handed out as a new handle, and none is taken.
STDMETHODIMP ControlBase::GetDataHere(FORMATETC*, STGMEDIUM*) { return E_NOTIMPL; }
STDMETHODIMP ControlBase::SetData(FORMATETC*, STGMEDIUM*, BOOL) { return E_NOTIMPL; }

STDMETHODIMP ControlBase::GetCanonicalFormatEtc(FORMATETC* format, FORMATETC* canonical) {
    if (!format || !canonical) return E_POINTER;
    // A metafile does not depend on the device that it is for.
    *canonical = *format;
    canonical->ptd = nullptr;
    return format->ptd ? S_OK : DATA_S_SAMEFORMATETC;
}

STDMETHODIMP ControlBase::EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) {
    return Guard([&]() -> HRESULT {
        if (!formats) return E_POINTER;
        *formats = nullptr;
        if (direction != DATADIR_GET) return E_NOTIMPL;
        using All = Enumerator<IEnumFORMATETC, FORMATETC, FORMATETC, CopyFormat>;
        *formats = MakeObject<All>(std::vector<FORMATETC>(offeredFormats.begin(), offeredFormats.end())).detach();
        return S_OK;
    });
}

STDMETHODIMP ControlBase::DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* connection) {
    return Guard([&]() -> HRESULT {
        if (!format || !sink || !connection) return E_POINTER;
        *connection = 0;
        // Without a format, a container asks for all of them.
        if (format->cfFormat != 0) Check(FindFormat(format));
        if (!dataAdvises_) Check(CreateDataAdviseHolder(dataAdvises_.put()));
        return dataAdvises_->Advise(this, format, flags, sink, connection);
    });
}

STDMETHODIMP ControlBase::DUnadvise(DWORD connection) {
    return dataAdvises_ ? dataAdvises_->Unadvise(connection) : OLE_E_NOCONNECTION;
}

STDMETHODIMP ControlBase::EnumDAdvise(IEnumSTATDATA** advises) {
    if (!advises) return E_POINTER;
    *advises = nullptr;
    return dataAdvises_ ? dataAdvises_->EnumAdvise(advises) : OLE_E_ADVISENOTSUPPORTED;
}

void ControlBase::DataChanged(DWORD flags) {
    if (!dataAdvises_ || loading_ > 0) return;
    const auto holder = dataAdvises_;
    holder->SendOnDataChange(this, 0, flags);
}

}  // namespace qvx
