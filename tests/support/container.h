// A bare container of our own: one control in a window, with as much of a host around it as a test asks for.
#pragma once

#include <windows.h>

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

// A property bag in memory. What is written is kept in order.
class MemoryBag final : public ComObject<IPropertyBag> {
  public:
    STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog* log) override;
    STDMETHODIMP Write(LPCOLESTR name, VARIANT* value) override;

    std::vector<std::pair<std::wstring, Variant>> entries;
    const Variant* Find(const std::wstring& name) const;
    void Set(const std::wstring& name, Variant value);
    // "Name=value" lines in the order of writing; objects are told by their fonts' names and sizes.
    Text Print() const;

  private:
    ~MemoryBag() override = default;
};

// Writes down what a control fires, and may answer through by-reference arguments.
class EventRecorder final : public ComObject<UntypedDispatch> {
  public:
    struct Event {
        DISPID id;
        std::vector<Variant> arguments;  // from left to right, references taken off
    };
    std::vector<Event> events;
    // Called for each event with the arguments as they came (from right to left, references and all).
    std::function<void(DISPID, DISPPARAMS&)> onEvent;

    size_t Count(DISPID id) const;

    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentInError) override;

  private:
    ~EventRecorder() override = default;
};

// Counts property notifications, and may refuse changes.
class PropertyListener final : public ComObject<IPropertyNotifySink> {
  public:
    std::vector<DISPID> changed;
    STDMETHODIMP OnChanged(DISPID property) override;
    STDMETHODIMP OnRequestEdit(DISPID property) override;

  private:
    ~PropertyListener() override = default;
};

// A connection for the length of a scope. `iid` is the connection point's.
class Connection {
  public:
    Connection(IUnknown* control, REFIID iid, IUnknown* sink);
    ~Connection() { Disconnect(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    void Disconnect();
    bool Connected() const { return cookie_ != 0; }

  private:
    ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

// The default source interface of a control.
IID EventsOf(IUnknown* control);

class Site;

class Container {
  public:
    struct Options {
        // Ambient properties by their numbers; none at all for a host that offers none.
        std::map<DISPID, Variant> ambients;
        // Whether the site offers IOleControlSite.
        bool controlSite = true;
        // The extended control that GetExtendedControl gives; null for none.
        ComPtr<IDispatch> extended;
        RECT bounds{10, 10, 210, 110};
        // Whether the site has used a key that the control offers it, with the system's KEYMOD_ bits; none without.
        std::function<bool(const MSG& message, DWORD modifiers)> usesKey;
        // What the site and its frame answer to a call of that name, which may do something of its own; S_OK without.
        std::function<HRESULT(const std::string& call)> answer;
    };
    explicit Container(Options options);
    ~Container();
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    // Sites a control. `prepare` initialises or loads it once it is sited; InitNew by default.
    void Place(const ComPtr<IUnknown>& control, const std::function<void(IUnknown*)>& prepare = {});
    // The siting alone, which may fail.
    HRESULT PutIn(const ComPtr<IUnknown>& control);
    void Activate();
    void ActivateUi();
    void MoveTo(const RECT& bounds);
    // Deactivates, unsites and forgets the control.
    void Close();

    HWND Window() const { return window_; }
    // The active control's window; null while it is inactive.
    HWND ControlWindow() const;
    IUnknown* Control() const { return control_.get(); }
    ComPtr<IDispatch> Automation() const { return control_.As<IDispatch>(); }
    void SetAmbient(DISPID property, Variant value);

    // What the control told its site: calls by name, in order.
    std::vector<std::string>& Calls();

  private:
    HWND window_ = nullptr;
    ComPtr<Site> site_;
    ComPtr<IUnknown> control_;
};

// A host that designs or runs forms and calls the control Thing1.
Container::Options HostInMode(bool userMode);

// Lets the messages that wait be handled; at most the given number of rounds.
void Pump(int rounds = 50);

// What a stream holds, and a stream over bytes, positioned at the start.
ComPtr<IStream> StreamOf(const std::vector<std::uint8_t>& bytes);
std::vector<std::uint8_t> BytesOf(IStream* stream);
// The control's saved form.
std::vector<std::uint8_t> SaveToStream(IUnknown* control);
HRESULT LoadFromStream(IUnknown* control, const std::vector<std::uint8_t>& bytes);
ComPtr<MemoryBag> SaveToBag(IUnknown* control);
HRESULT LoadFromBag(IUnknown* control, IPropertyBag* bag);

}  // namespace qvx::test
