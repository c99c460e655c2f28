// A minimal container: one control in a window, with as much of a host around it as a test requests.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <ocidl.h>
#include <oleidl.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "com/object.h"
#include "com/pointer.h"
#include "com/untyped_dispatch.h"
#include "com/variant.h"

namespace qvx::test {

// A property bag in memory, which keeps the entries in the order of writing.
class MemoryBag final : public ComObject<IPropertyBag> {
  public:
    STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog* log) override;
    STDMETHODIMP Write(LPCOLESTR name, VARIANT* value) override;

    std::vector<std::pair<std::wstring, Variant>> entries;
    const Variant* Find(const std::wstring& name) const;
    void Set(const std::wstring& name, Variant value);
    // Returns "Name=value" lines in the order of writing; an object is shown by its font's name and size.
    Text Print() const;

  private:
    ~MemoryBag() override = default;
};

// Records the events of a control, and may answer through by-reference arguments.
class EventRecorder final : public ComObject<UntypedDispatch> {
  public:
    struct Event {
        DISPID id;
        std::vector<Variant> arguments;  // from left to right, without references
    };
    std::vector<Event> events;
    // Called for each event with the original arguments (from right to left, with references).
    std::function<void(DISPID, DISPPARAMS&)> onEvent;

    size_t Count(DISPID id) const;

    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentInError) override;

  private:
    ~EventRecorder() override = default;
};

// Records property notifications.
class PropertyListener final : public ComObject<IPropertyNotifySink> {
  public:
    std::vector<DISPID> changed;
    STDMETHODIMP OnChanged(DISPID property) override;
    STDMETHODIMP OnRequestEdit(DISPID property) override;

  private:
    ~PropertyListener() override = default;
};

// A connection for the duration of a scope. `iid` is the connection point's interface.
class Connection {
  public:
    Connection(IUnknown* control, REFIID iid, IUnknown* sink);
    ~Connection() { Disconnect(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    void Disconnect();

  private:
    ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

// Returns the default source interface of a control.
IID EventsOf(IUnknown* control);

class Site;

class Container {
  public:
    struct Options {
        // Ambient properties by their numbers; empty for a host that offers none.
        std::map<DISPID, Variant> ambients;
        // Whether the site offers IOleControlSite.
        bool controlSite = true;
        // The extended control that GetExtendedControl returns; null for none.
        ComPtr<IDispatch> extended;
        RECT bounds{10, 10, 210, 110};
        // Whether the site uses a key that the control offers it, with the system's KEYMOD_ bits; it uses none by
        // default.
        std::function<bool(const MSG& message, DWORD modifiers)> usesKey;
        // The result of the site and its frame for a call of that name; it may have side effects. S_OK by default.
        std::function<HRESULT(const std::string& call)> answer;
    };
    explicit Container(Options options);
    ~Container();
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    // Sites a control. `prepare` then initialises or loads it; InitNew by default.
    void Place(const ComPtr<IUnknown>& control, const std::function<void(IUnknown*)>& prepare = {});
    // Only sites a control, which may fail.
    HRESULT PutIn(const ComPtr<IUnknown>& control);
    HRESULT DoVerb(LONG verb);
    void Activate() { EXPECT_EQ(S_OK, DoVerb(OLEIVERB_INPLACEACTIVATE)); }
    void ActivateUi() { EXPECT_EQ(S_OK, DoVerb(OLEIVERB_UIACTIVATE)); }
    void MoveTo(const RECT& bounds);
    // Closes and unsites the control, and releases it.
    void Close();

    HWND Window() const { return window_; }
    // Returns the active control's window; null while it is inactive.
    HWND ControlWindow() const;
    IUnknown* Control() const { return control_.get(); }
    ComPtr<IDispatch> Automation() const { return control_.As<IDispatch>(); }
    void SetAmbient(DISPID property, Variant value);

    // The control's calls to its site by name, in order.
    std::vector<std::string>& Calls();

  private:
    HWND window_ = nullptr;
    ComPtr<Site> site_;
    ComPtr<IUnknown> control_;
};

// A host that designs or runs forms and calls the control Thing1.
Container::Options HostInMode(bool userMode);

// Handles the waiting messages, at most `rounds` of them.
void Pump(int rounds = 50);

// Return a stream over bytes, positioned at the start, and the bytes of a stream.
ComPtr<IStream> StreamOf(const std::vector<std::uint8_t>& bytes);
std::vector<std::uint8_t> BytesOf(IStream* stream);
// Save a control to and load it from a stream or a property bag.
std::vector<std::uint8_t> SaveToStream(IUnknown* control);
HRESULT LoadFromStream(IUnknown* control, const std::vector<std::uint8_t>& bytes);
ComPtr<MemoryBag> SaveToBag(IUnknown* control);
HRESULT LoadFromBag(IUnknown* control, IPropertyBag* bag);

}  // namespace qvx::test
