// An embedded object that does nothing, for tests that need only a part of one.
#pragma once

#include <windows.h>

#include <oleidl.h>

#include "com/object.h"

namespace qvx::test {

template <class... Others>
class InertObject : public ComObject<IOleObject, Others...> {
  public:
    STDMETHODIMP SetClientSite(IOleClientSite*) override { return S_OK; }
    STDMETHODIMP GetClientSite(IOleClientSite**) override { return E_NOTIMPL; }
    STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
    STDMETHODIMP Close(DWORD) override { return S_OK; }
    STDMETHODIMP SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
    STDMETHODIMP InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP GetClipboardData(DWORD, IDataObject**) override { return E_NOTIMPL; }
    STDMETHODIMP DoVerb(LONG, LPMSG, IOleClientSite*, LONG, HWND, LPCRECT) override { return S_OK; }
    STDMETHODIMP EnumVerbs(IEnumOLEVERB**) override { return OLEOBJ_E_NOVERBS; }
    STDMETHODIMP Update() override { return S_OK; }
    STDMETHODIMP IsUpToDate() override { return S_OK; }
    STDMETHODIMP GetUserClassID(CLSID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetUserType(DWORD, LPOLESTR*) override { return E_NOTIMPL; }
    STDMETHODIMP SetExtent(DWORD, SIZEL*) override { return S_OK; }
    STDMETHODIMP GetExtent(DWORD, SIZEL*) override { return E_NOTIMPL; }
    STDMETHODIMP Advise(IAdviseSink*, DWORD*) override { return OLE_E_ADVISENOTSUPPORTED; }
    STDMETHODIMP Unadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    STDMETHODIMP EnumAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }
    STDMETHODIMP GetMiscStatus(DWORD, DWORD* status) override {
        *status = OLEMISC_SETCLIENTSITEFIRST;
        return S_OK;
    }
    STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return S_OK; }

  protected:
    ~InertObject() override = default;
};

}  // namespace qvx::test
