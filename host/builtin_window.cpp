#include "host/builtin_window.h"

#include <olectl.h>

#include <algorithm>
#include <type_traits>

#include "com/wide_text.h"
#include "common/flag_scope.h"
#include "common/run_time_error.h"
#include "host/form_font.h"
#include "host/form_window.h"
#include "host/tab_order.h"
#include "win/gdi_surface.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::host {

namespace {
constexpr int sunkenFrame = 2;  // a frame's BorderStyle
}

std::optional<BuiltIn> FindBuiltIn(TextView className) {
    if (SameName(className, u"Label")) return BuiltIn::label;
    if (SameName(className, u"TextBox")) return BuiltIn::textBox;
    if (SameName(className, u"Frame")) return BuiltIn::frame;
    return std::nullopt;
}

// The members that scripts see beside those of the extended control.
class BuiltInControl::Members final : public NamedObject {
  public:
    explicit Members(BuiltInControl& control) : control_(&control) {
        AddProperty(u"BackColor", [this](const Call& call) {
            BuiltInControl& c = Control();
            if (call.put) c.ownBackColor_ = true, c.SetColor(c.backColor_, static_cast<OLE_COLOR>(call.LongValue()));
            return Variant(static_cast<long>(c.backColor_));
        });
        AddProperty(u"ForeColor", [this](const Call& call) {
            BuiltInControl& c = Control();
            if (call.put) c.ownForeColor_ = true, c.SetColor(c.foreColor_, static_cast<OLE_COLOR>(call.LongValue()));
            return Variant(static_cast<long>(c.foreColor_));
        });
        AddProperty(u"Font", [this](const Call& call) {
            BuiltInControl& c = Control();
            if (call.put) {
                const auto font = call.Value().ToObject<IFontDisp>();
                if (!font) ThrowTypeMismatch();
                c.font_.Set(font.get(), false);
            }
            const auto font = ComPtr<IFontDisp>::Adopt(c.font_.Get());
            return Variant(static_cast<IDispatch*>(font.get()));
        });
        AddReadOnly(u"hWnd", [this](const Call&) {
            return Variant(static_cast<long>(reinterpret_cast<LONG_PTR>(Control().window_)));
        });
        AddMethod(u"Refresh", [this](const Call&) {
            RedrawWindow(Control().window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
            return Variant();
        });
        if (control.kind_ == BuiltIn::textBox) {
            AddText(u"Text");
            AddTextBoxMembers();
        } else {
            AddText(u"Caption");
            if (control.kind_ == BuiltIn::label) AddLabelMembers();
            if (control.kind_ == BuiltIn::frame) AddStyle(u"BorderStyle", &BuiltInControl::borderStyle_, sunkenFrame);
        }
    }
    void Forget() { control_ = nullptr; }

  private:
    ~Members() override = default;

    BuiltInControl& Control() const {
        if (!control_) ThrowObjectNotSet();
        return *control_;
    }

    void AddText(const char16_t* name) {
        AddProperty(name, [this](const Call& call) {
            if (call.put) SetWindowTextW(Control().window_, Wide(call.StringValue()));
            return Variant(WindowText(Control().window_));
        });
        SetDefaultMember(name);
    }

    // A property that the window is made with; `most` is its largest value.
    template <typename Field>
    void AddStyle(const char16_t* name, Field BuiltInControl::*field, long most) {
        AddProperty(name, [this, field, most](const Call& call) {
            BuiltInControl& c = Control();
            if (call.put) {
                const long number =
                    std::is_same_v<Field, bool> && call.Value().Type() == VT_BOOL ? call.BoolValue() : call.LongValue();
                if (number < 0 || number > most)
                    throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
                c.*field = static_cast<Field>(number);
                c.RecreateSystemWindow();
            }
            return Variant(c.*field);
        });
    }

    void AddLabelMembers() {
        AddStyle(u"Alignment", &BuiltInControl::alignment_, 2);
        AddStyle(u"BorderStyle", &BuiltInControl::borderStyle_, 1);
        AddProperty(u"BackStyle", [this](const Call& call) {
            if (call.put) {
                const long number = call.LongValue();
                if (number < 0 || number > 1)
                    throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
                Control().opaque_ = number != 0;
                RedrawWindow(Control().window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE);
            }
            return Variant(Control().opaque_ ? 1 : 0);
        });
    }

    void AddTextBoxMembers() {
        AddStyle(u"Alignment", &BuiltInControl::alignment_, 2);
        AddStyle(u"BorderStyle", &BuiltInControl::borderStyle_, 1);
        AddStyle(u"ScrollBars", &BuiltInControl::scrollBars_, 3);
        AddStyle(u"MultiLine", &BuiltInControl::multiLine_, 1);
        AddProperty(u"PasswordChar", [this](const Call& call) {
            if (call.put) {
                Control().passwordChar_ = call.StringValue().substr(0, 1);
                Control().RecreateSystemWindow();
            }
            return Variant(Control().passwordChar_);
        });
        AddProperty(u"MaxLength", [this](const Call& call) {
            if (call.put) {
                Control().maxLength_ = static_cast<int>(std::max(call.LongValue(), 0L));
                SendMessageW(Control().window_, EM_SETLIMITTEXT, static_cast<WPARAM>(Control().maxLength_), 0);
            }
            return Variant(Control().maxLength_);
        });
        AddProperty(u"Locked", [this](const Call& call) {
            if (call.put) {
                Control().locked_ = call.BoolValue();
                SendMessageW(Control().window_, EM_SETREADONLY, Control().locked_, 0);
            }
            return Variant(Control().locked_);
        });
        AddProperty(u"SelStart", [this](const Call& call) {
            if (call.put) Select(call.LongValue(), 0);
            return Variant(static_cast<long>(Selection().first));
        });
        AddProperty(u"SelLength", [this](const Call& call) {
            if (call.put) Select(static_cast<long>(Selection().first), call.LongValue());
            const auto [start, end] = Selection();
            return Variant(static_cast<long>(end - start));
        });
        AddProperty(u"SelText", [this](const Call& call) {
            if (call.put) {
                const Text text = call.StringValue();
                SendMessageW(Control().window_, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(Wide(text)));
            }
            const auto [start, end] = Selection();
            return Variant(WindowText(Control().window_).substr(start, end - start));
        });
    }

    std::pair<DWORD, DWORD> Selection() const {
        DWORD start = 0;
        DWORD end = 0;
        SendMessageW(Control().window_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
        return {start, end};
    }
    void Select(long start, long length) {
        if (start < 0 || length < 0) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
        SendMessageW(Control().window_, EM_SETSEL, static_cast<WPARAM>(start), start + length);
    }

    BuiltInControl* control_;
};

// The windows inside a frame send their messages to it; the form answers them. The system's own frame leaves its inside
// unpainted.
class BuiltInControl::Relay final : public WindowSubclass {
  public:
    Relay(HWND form, const UniqueBrush& brush) : form_(form), brush_(brush) {}

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        switch (message) {
            case WM_COMMAND:
            case WM_CTLCOLORSTATIC:
            case WM_CTLCOLOREDIT:
            case WM_CTLCOLORBTN:
                return SendMessageW(form_, message, wParam, lParam);
            case WM_ERASEBKGND: {
                RECT area{};
                GetClientRect(Handle(), &area);
                FillRect(reinterpret_cast<HDC>(wParam), &area, brush_.Get());
                return 1;
            }
            default:
                return Default(message, wParam, lParam);
        }
    }

  private:
    HWND form_;
    const UniqueBrush& brush_;
};

BuiltInControl::BuiltInControl(HostForm& form, const Block& block, FormControl* container, BuiltIn kind)
    : FormControl(form, block, container),
      kind_(kind),
      enabled_(block.BoolOf(u"Enabled", true)),
      backColor_(kind == BuiltIn::textBox ? colors::windowBackground : form.BackColor()),
      foreColor_(kind == BuiltIn::textBox ? colors::windowText : form.ForeColor()),
      ownBackColor_(block.Find(u"BackColor") != nullptr),
      ownForeColor_(block.Find(u"ForeColor") != nullptr),
      ownFont_(block.FindGroup(u"Font") != nullptr),
      alignment_(block.IntOf(u"Alignment", 0)),
      borderStyle_(block.IntOf(u"BorderStyle", kind == BuiltIn::label ? 0 : 1)),
      opaque_(block.IntOf(u"BackStyle", 1) != 0),
      multiLine_(block.BoolOf(u"MultiLine", false)),
      scrollBars_(block.IntOf(u"ScrollBars", 0)),
      locked_(block.BoolOf(u"Locked", false)),
      maxLength_(std::max(block.IntOf(u"MaxLength", 0), 0)),
      passwordChar_(block.TextOf(u"PasswordChar")),
      font_([this] {
          ownFont_ = true;
          ApplyFont();
      }) {
    backColor_ = static_cast<OLE_COLOR>(block.IntOf(u"BackColor", static_cast<std::int32_t>(backColor_)));
    foreColor_ = static_cast<OLE_COLOR>(block.IntOf(u"ForeColor", static_cast<std::int32_t>(foreColor_)));
    const Block* font = block.FindGroup(u"Font");
    font_.Load(font ? ReadFont(*font, form.Font().Value()) : form.Font().Value());
    quiet_ = true;
    CreateSystemWindow();
    ApplyFont();
    const Text text = block.TextOf(kind == BuiltIn::textBox ? u"Text" : u"Caption");
    SetWindowTextW(window_, Wide(text));
    quiet_ = false;
    members_ = MakeObject<Members>(*this);
}

BuiltInControl::~BuiltInControl() {
    members_->Forget();
    relay_.reset();
    if (window_ && IsWindow(window_)) DestroyWindow(window_);
}

DWORD BuiltInControl::StyleBits() const {
    if (kind_ == BuiltIn::frame) return WS_CLIPCHILDREN | (IsPanel() ? SS_LEFT : BS_GROUPBOX);
    if (kind_ == BuiltIn::label) {
        const DWORD alignment = alignment_ == 1 ? SS_RIGHT : alignment_ == 2 ? SS_CENTER : SS_LEFT;
        return SS_NOTIFY | alignment | (borderStyle_ ? WS_BORDER : 0u);
    }
    const DWORD alignment = alignment_ == 1 ? ES_RIGHT : alignment_ == 2 ? ES_CENTER : ES_LEFT;
    DWORD style = alignment | (multiLine_ ? ES_MULTILINE | ES_WANTRETURN : ES_AUTOHSCROLL);
    if (multiLine_ && (scrollBars_ & 1)) style |= WS_HSCROLL | ES_AUTOHSCROLL;
    if (multiLine_ && (scrollBars_ & 2)) style |= WS_VSCROLL | ES_AUTOVSCROLL;
    if (locked_) style |= ES_READONLY;
    if (!passwordChar_.empty()) style |= ES_PASSWORD;
    return style;
}

void BuiltInControl::CreateSystemWindow() {
    const RECT bounds = PixelBounds();
    const wchar_t* className = kind_ == BuiltIn::label || IsPanel() ? L"STATIC"
                               : kind_ == BuiltIn::frame            ? L"BUTTON"
                                                                    : L"EDIT";
    const DWORD style = WS_CHILD | WS_CLIPSIBLINGS | StyleBits() | (ShownAs(Visible()) ? WS_VISIBLE : 0u) |
                        (enabled_ ? 0u : WS_DISABLED);
    const bool sunken =
        kind_ == BuiltIn::frame ? borderStyle_ == sunkenFrame : kind_ == BuiltIn::textBox && borderStyle_;
    // A frame's edge is three pixels wide, a text box's two.
    const DWORD exStyle = sunken ? WS_EX_CLIENTEDGE | (kind_ == BuiltIn::frame ? WS_EX_STATICEDGE : 0u) : 0u;
    window_ =
        CreateWindowExW(exStyle, className, L"", style, bounds.left, bounds.top, bounds.right - bounds.left,
                        bounds.bottom - bounds.top, Form().ParentWindow(*this), nullptr, ModuleInstance(), nullptr);
    if (!window_) throw FormFileError(LineNumber(), u"the system refuses a window for \"" + Name() + u"\"");
    if (kind_ == BuiltIn::frame) {
        relay_ = std::make_unique<Relay>(Form().Handle(), brush_);
        relay_->Attach(window_);
    }
    if (kind_ == BuiltIn::textBox) {
        if (maxLength_ > 0) SendMessageW(window_, EM_SETLIMITTEXT, static_cast<WPARAM>(maxLength_), 0);
        if (!passwordChar_.empty()) SendMessageW(window_, EM_SETPASSWORDCHAR, passwordChar_[0], 0);
    }
    SetColor(backColor_, backColor_);
}

void BuiltInControl::RecreateSystemWindow() {
    const FlagScope scope(quiet_);
    const HWND old = window_;
    const bool focused = GetFocus() == old;
    const Text text = WindowText(old);
    const HWND above = GetWindow(old, GW_HWNDPREV);
    CreateSystemWindow();
    ApplyFont();
    SetWindowTextW(window_, Wide(text));
    SetWindowPos(window_, above ? above : HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    // The controls in a frame move over, the rearmost first, since each arrives in front of the ones before.
    std::vector<HWND> held;
    for (HWND child = GetWindow(old, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) held.push_back(child);
    std::for_each(held.rbegin(), held.rend(), [this](HWND child) { SetParent(child, window_); });
    if (focused) SetFocus(window_);
    DestroyWindow(old);
    Form().UpdateToolTip(*this);
}

void BuiltInControl::ApplyFont() {
    if (!window_) return;
    SharedFont font = AcquireFont(font_.Value(), Form().FormDpi());
    SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font->Get()), TRUE);
    systemFont_ = std::move(font);  // only now, since the window has used the former one until here
}

void BuiltInControl::SetColor(OLE_COLOR& color, OLE_COLOR value) {
    color = value;
    brush_.Reset(CreateSolidBrush(ResolveColor(backColor_)));
    if (window_) RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

HBRUSH BuiltInControl::OnColor(HDC dc) {
    SetTextColor(dc, ResolveColor(foreColor_));
    SetBkColor(dc, ResolveColor(backColor_));
    if (kind_ == BuiltIn::label && !opaque_) {
        SetBkMode(dc, TRANSPARENT);
        // The background is that of its frame, or of the form.
        const auto* frame = dynamic_cast<const BuiltInControl*>(Container());
        return frame ? frame->brush_.Get() : nullptr;
    }
    return brush_.Get();
}

void BuiltInControl::Focus(const MSG*) {
    SetFocus(window_);
    // As after Tab, all of the text is selected.
    if (kind_ == BuiltIn::textBox && !multiLine_) SendMessageW(window_, EM_SETSEL, 0, -1);
    Form().Keyboard().FollowFocus();
}

bool BuiltInControl::AcceptsFocus() const {
    return kind_ == BuiltIn::textBox && IsWindowVisible(window_) && IsWindowEnabled(window_);
}

void BuiltInControl::SetEnabled(bool enabled) {
    enabled_ = enabled;
    EnableWindow(window_, enabled);
}

ComPtr<IDispatch> BuiltInControl::Inner() const { return members_; }

std::vector<char16_t> BuiltInControl::AccessKeys() const {
    if (kind_ == BuiltIn::textBox) return {};
    const char16_t key = AccessKey(WindowText(window_));
    return key ? std::vector<char16_t>{key} : std::vector<char16_t>{};
}

void BuiltInControl::FollowResolution() {
    ApplyFont();
    FormControl::FollowResolution();
}

void BuiltInControl::OnAmbientChanged(DISPID property) {
    const bool followsColors = kind_ != BuiltIn::textBox;
    if (property == DISPID_AMBIENT_BACKCOLOR && followsColors && !ownBackColor_)
        SetColor(backColor_, Form().BackColor());
    if (property == DISPID_AMBIENT_FORECOLOR && followsColors && !ownForeColor_)
        SetColor(foreColor_, Form().ForeColor());
    if (property == DISPID_AMBIENT_FONT && !ownFont_) {
        font_.Load(Form().Font().Value());
        ApplyFont();
    }
}

void BuiltInControl::OnCommand(UINT notification) {
    if (quiet_) return;
    if (kind_ == BuiltIn::textBox) {
        if (notification == EN_CHANGE) Form().Fire(*this, u"Change", {});
    } else if (kind_ == BuiltIn::label) {
        if (notification == STN_CLICKED) Form().Fire(*this, u"Click", {});
        if (notification == STN_DBLCLK) Form().Fire(*this, u"DblClick", {});
    }
}

void BuiltInControl::ApplyBounds(const RECT& pixels) {
    SetWindowPos(window_, nullptr, pixels.left, pixels.top, pixels.right - pixels.left, pixels.bottom - pixels.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void BuiltInControl::ApplyVisible(bool visible) { ShowWindow(window_, visible ? SW_SHOWNA : SW_HIDE); }

void BuiltInControl::SaveOwn(SavedProperties& saved) {
    const bool textBox = kind_ == BuiltIn::textBox;
    const auto addUnless = [&](const char16_t* name, bool isDefault, FormValue value) {
        if (!isDefault) saved.Add(name, std::move(value));
    };
    if (ownBackColor_) saved.Add(u"BackColor", static_cast<std::int32_t>(backColor_));
    if (ownForeColor_) saved.Add(u"ForeColor", static_cast<std::int32_t>(foreColor_));
    const Text text = WindowText(window_);
    addUnless(textBox ? u"Text" : u"Caption", text.empty(), text);
    addUnless(u"Enabled", enabled_, false);
    addUnless(u"Alignment", alignment_ == 0, std::int32_t{alignment_});
    addUnless(u"BorderStyle", borderStyle_ == (kind_ == BuiltIn::label ? 0 : 1), std::int32_t{borderStyle_});
    addUnless(u"BackStyle", opaque_, std::int32_t{0});
    addUnless(u"MultiLine", !multiLine_, true);
    addUnless(u"ScrollBars", scrollBars_ == 0, std::int32_t{scrollBars_});
    addUnless(u"Locked", !locked_, true);
    addUnless(u"MaxLength", maxLength_ == 0, std::int32_t{maxLength_});
    addUnless(u"PasswordChar", passwordChar_.empty(), passwordChar_);
    if (ownFont_) saved.AddGroup(u"Font", SaveFont(font_.Value()));
}

std::vector<Text> BuiltInControl::KnownProperties() const {
    return {u"BackColor", u"ForeColor", u"Caption",    u"Text",   u"Enabled",   u"Alignment",    u"BorderStyle",
            u"BackStyle", u"MultiLine", u"ScrollBars", u"Locked", u"MaxLength", u"PasswordChar", u"Font"};
}

}  // namespace qvx::host
