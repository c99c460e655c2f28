#include "host/form_control.h"

#include <algorithm>

#include "common/run_time_error.h"
#include "host/form_window.h"

namespace qvx::host {

namespace {
// Far above what controls use, so that their own identifiers pass through unchanged.
constexpr DISPID firstExtendedMember = 0x60000000;

bool SaysSizeIn(const Block& block) { return block.Find(u"Width") || block.Find(u"Height"); }
}  // namespace

FormControl::FormControl(HostForm& form, const Block& block, FormControl* container)
    : form_(form),
      name_(block.name),
      className_(block.className),
      lineNumber_(block.lineNumber),
      saysSize_(SaysSizeIn(block)),
      container_(container),
      index_(block.IntOf(u"Index", -1)),
      bounds_{block.IntOf(u"Left", 0), block.IntOf(u"Top", 0), block.IntOf(u"Width", defaultControlSize),
              block.IntOf(u"Height", defaultControlSize)},
      visible_(block.BoolOf(u"Visible", true)),
      tabIndex_(block.IntOf(u"TabIndex", form.NextTabIndex())),
      tabStop_(block.BoolOf(u"TabStop", true)),
      tag_(block.TextOf(u"Tag")),
      toolTip_(block.TextOf(u"ToolTipText")),
      default_(block.BoolOf(u"Default", false)),
      cancel_(block.BoolOf(u"Cancel", false)) {
    extended_ = MakeObject<ExtendedControl>(*this);
}

FormControl::~FormControl() {
    form_.ForgetControl(*this);
    extended_->Forget();
}

Block* FormControl::BlockAmong(const std::vector<Block*>& objects) const {
    const auto found = std::find_if(objects.begin(), objects.end(), [&](const Block* block) {
        return block->name == name_ && block->IntOf(u"Index", -1) == index_;
    });
    return found == objects.end() ? nullptr : *found;
}

Text FormControl::Title() const {
    if (index_ < 0) return Name();
    return Name() + u"(" + ValueAsText(FormValue(std::int32_t{index_})) + u")";
}

IDispatch* FormControl::Extended() const { return extended_.get(); }

RECT FormControl::PixelBounds() const {
    const Dpi dpi = form_.FormDpi();
    // Edges are converted rather than sizes, so that edges that meet in twips also meet in pixels.
    return {TwipsToPixels(bounds_.left, dpi.x), TwipsToPixels(bounds_.top, dpi.y),
            TwipsToPixels(bounds_.left + bounds_.width, dpi.x), TwipsToPixels(bounds_.top + bounds_.height, dpi.y)};
}

void FormControl::Move(const TwipsRect& bounds) {
    if (bounds.width < 0 || bounds.height < 0) {
        throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    }
    const bool changed = !(bounds_ == bounds);
    bounds_ = bounds;
    ApplyBounds(PixelBounds());
    if (changed) NoteChange();
}

void FormControl::FollowResolution() {
    const TwipsRect before = bounds_;
    ApplyBounds(PixelBounds());
    // The size that a control chooses itself at a resolution is no change to save.
    if (bounds_.width != before.width) loaded_.Add(u"Width", std::int32_t{bounds_.width});
    if (bounds_.height != before.height) loaded_.Add(u"Height", std::int32_t{bounds_.height});
}

bool FormControl::Reachable() const { return visible_ && Enabled() && (!container_ || container_->Reachable()); }

bool FormControl::ShownAs(bool visible) const { return visible || form_.DesignMode(); }

void FormControl::SetVisible(bool visible) {
    visible_ = visible;
    ApplyVisible(ShownAs(visible));
}

void FormControl::SetToolTip(Text text) {
    toolTip_ = std::move(text);
    form_.UpdateToolTip(*this);
}

SavedProperties FormControl::Saved() {
    SavedProperties saved;
    const auto addUnless = [&](const char16_t* name, bool isDefault, FormValue value) {
        if (!isDefault) saved.Add(name, std::move(value));
    };
    addUnless(u"Index", index_ < 0, std::int32_t{index_});
    saved.Add(u"Left", std::int32_t{bounds_.left});
    saved.Add(u"Top", std::int32_t{bounds_.top});
    saved.Add(u"Width", std::int32_t{bounds_.width});
    saved.Add(u"Height", std::int32_t{bounds_.height});
    saved.Add(u"TabIndex", std::int32_t{tabIndex_});
    addUnless(u"TabStop", tabStop_, false);
    addUnless(u"Visible", visible_, false);
    addUnless(u"Tag", tag_.empty(), tag_);
    addUnless(u"ToolTipText", toolTip_.empty(), toolTip_);
    addUnless(u"Default", !default_, true);
    addUnless(u"Cancel", !cancel_, true);
    SaveOwn(saved);
    return saved;
}

void FormControl::SaveToBlock(Block& block, const SavedProperties& saved, MergeMode mode) const {
    static const std::vector<Text> ofTheForm = {u"Index",   u"Left",    u"Top", u"Width",       u"Height",  u"TabIndex",
                                                u"TabStop", u"Visible", u"Tag", u"ToolTipText", u"Default", u"Cancel"};
    std::vector<Text> known = KnownProperties();
    known.insert(known.end(), ofTheForm.begin(), ofTheForm.end());
    MergeSaved(block, loaded_, saved, known, mode);
}

namespace {
constexpr const char16_t* placing[] = {u"Left", u"Top", u"Width", u"Height", u"TabIndex"};
}  // namespace

Text FormControl::LookOf(const Block& block) {
    Text text = block.begin.text;
    for (const Entry& entry : block.entries) {
        if (entry.block) {
            if (entry.block->kind == Block::Kind::propertyGroup) text += u"\n" + LookOf(*entry.block) + u"\n";
        } else if (std::none_of(std::begin(placing), std::end(placing),
                                [&](const char16_t* name) { return SameName(entry.name, name); })) {
            text += u"\n" + entry.line.text;
        }
    }
    return text;
}

bool FormControl::Shows(const Block& block) const {
    return SameName(block.className, className_) && block.name == name_ && LookOf(block) == look_;
}

void FormControl::RememberBlock(const Block& block) {
    look_ = LookOf(block);
    className_ = block.className;
    name_ = block.name;
    saysSize_ = SaysSizeIn(block);
}

bool FormControl::FollowBlock(const Block& block) {
    saysSize_ = SaysSizeIn(block);
    const TwipsRect bounds{block.IntOf(u"Left", 0), block.IntOf(u"Top", 0), block.IntOf(u"Width", defaultControlSize),
                           block.IntOf(u"Height", defaultControlSize)};
    tabIndex_ = block.IntOf(u"TabIndex", form_.NextTabIndex());
    loaded_.Add(u"TabIndex", std::int32_t{tabIndex_});
    if (bounds == bounds_) return true;
    Move(bounds);
    // A size other than the form's is a change that the control makes.
    const TwipsRect& said = SaysSize() ? bounds : bounds_;
    loaded_.Add(u"Left", std::int32_t{bounds.left});
    loaded_.Add(u"Top", std::int32_t{bounds.top});
    loaded_.Add(u"Width", std::int32_t{said.width});
    loaded_.Add(u"Height", std::int32_t{said.height});
    return bounds_.left == bounds.left && bounds_.top == bounds.top && bounds_.width == said.width &&
           bounds_.height == said.height;
}

void FormControl::NoteChange() { form_.NoteChange(this); }

bool FormControl::TranslateKey(MSG&) { return false; }

void FormControl::OnAccessKey(MSG&) {}

ExtendedControl::ExtendedControl(FormControl& control) : NamedObject(firstExtendedMember), control_(&control) {
    AddProperty(u"Name", [this](const Call& call) {
        if (call.put) {
            RequireDesigner().Rename(control_, call.StringValue());
            return Variant();
        }
        return Variant(Control().Name());
    });
    AddReadOnly(u"Parent", [this](const Call&) { return Variant(Control().Form().Automation()); });
    AddReadOnly(u"Container", [this](const Call&) {
        const FormControl* container = Control().Container();
        return Variant(container ? container->Extended() : Control().Form().Automation());
    });
    AddProperty(u"Index", [this](const Call& call) {
        if (call.put) {
            const bool none = call.Value().ToText().value_or(u"x").empty();
            RequireDesigner().SetIndex(Control(), none ? -1 : static_cast<int>(call.LongValue()));
            return Variant();
        }
        // A property list shows an empty field for a control that is no element.
        if (Control().Index() < 0 && Control().Form().Designer()) return Variant(u"");
        if (Control().Index() < 0) throw RunTimeError(343, u"Object not an array");
        return Variant(Control().Index());
    });
    AddReadOnly(u"Object", [this](const Call&) { return Variant(Control().Inner().get()); });
    AddPosition(u"Left", &TwipsRect::left);
    AddPosition(u"Top", &TwipsRect::top);
    AddPosition(u"Width", &TwipsRect::width);
    AddPosition(u"Height", &TwipsRect::height);
    AddProperty(u"Tag", [this](const Call& call) {
        if (call.put) Control().SetTag(call.StringValue());
        return Variant(Control().Tag());
    });
    AddProperty(u"ToolTipText", [this](const Call& call) {
        if (call.put) Control().SetToolTip(call.StringValue());
        return Variant(Control().ToolTip());
    });
    AddProperty(u"TabIndex", [this](const Call& call) {
        if (call.put) Control().SetTabIndex(static_cast<int>(call.LongValue()));
        return Variant(Control().TabIndex());
    });
    AddProperty(u"TabStop", [this](const Call& call) {
        if (call.put) Control().SetTabStop(call.BoolValue());
        return Variant(Control().HasTabStop());
    });
    AddProperty(u"Visible", [this](const Call& call) {
        if (call.put) Control().SetVisible(call.BoolValue());
        return Variant(Control().Visible());
    });
    AddProperty(u"Enabled", [this](const Call& call) {
        if (call.put) Control().SetEnabled(call.BoolValue());
        return Variant(Control().Enabled());
    });
    AddProperty(u"Default", [this](const Call& call) {
        if (call.put) ButtonControl().SetDefault(call.BoolValue());
        return Variant(ButtonControl().IsDefault());
    });
    AddProperty(u"Cancel", [this](const Call& call) {
        if (call.put) ButtonControl().SetCancel(call.BoolValue());
        return Variant(ButtonControl().IsCancel());
    });
    AddMethod(u"Move", [this](const Call& call) {
        TwipsRect bounds = Control().Bounds();
        bounds.left = static_cast<int>(call.Long(0));
        if (call.Has(1)) bounds.top = static_cast<int>(call.Long(1));
        if (call.Has(2)) bounds.width = static_cast<int>(call.Long(2));
        if (call.Has(3)) bounds.height = static_cast<int>(call.Long(3));
        Control().Move(bounds);
        return Variant();
    });
    AddMethod(u"SetFocus", [this](const Call&) {
        if (!Control().CanFocus())
            throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
        Control().Focus(nullptr);
        return Variant();
    });
    // Position 0 is the front, any other the back.
    AddMethod(u"ZOrder", [this](const Call& call) {
        const bool front = !call.Has(0) || call.Long(0) == 0;
        if (const HWND window = Control().Window()) {
            SetWindowPos(window, front ? HWND_TOP : HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        }
        return Variant();
    });
}

FormControl& ExtendedControl::Control() const {
    if (!control_) ThrowObjectNotSet();
    return *control_;
}

DesignHost& ExtendedControl::RequireDesigner() const {
    DesignHost* designer = Control().Form().Designer();
    if (!designer) throw RunTimeError(errors::setNotSupportedAtRunTime, u"Set not supported at runtime");
    return *designer;
}

STDMETHODIMP ExtendedControl::Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argumentInError) {
    const HRESULT answer =
        NamedObject::Invoke(member, iid, locale, flags, parameters, result, exception, argumentInError);
    const bool put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    if (put && SUCCEEDED(answer) && control_) control_->NoteChange();
    return answer;
}

FormControl& ExtendedControl::ButtonControl() const {
    constexpr int noSuchMember = 438;
    if (!Control().IsButton()) throw RunTimeError(noSuchMember, u"Object doesn't support this property or method");
    return Control();
}

void ExtendedControl::AddPosition(const char16_t* name, int TwipsRect::*field) {
    AddProperty(name, [this, field](const Call& call) {
        TwipsRect bounds = Control().Bounds();
        if (call.put) {
            bounds.*field = static_cast<int>(call.LongValue());
            Control().Move(bounds);
        }
        return Variant(bounds.*field);
    });
}

HRESULT ExtendedControl::FindOther(LPOLESTR name, DISPID* id) {
    const ComPtr<IDispatch> inner = Control().Inner();
    if (!inner) return DISP_E_UNKNOWNNAME;
    const HRESULT found = inner->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, id);
    // An identifier of the inner object that looks like one of ours would be ambiguous.
    return SUCCEEDED(found) && *id >= firstExtendedMember ? DISP_E_UNKNOWNNAME : found;
}

HRESULT ExtendedControl::InvokeOther(DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argumentInError) {
    const ComPtr<IDispatch> inner = Control().Inner();
    if (!inner) return DISP_E_MEMBERNOTFOUND;
    return inner->Invoke(member, IID_NULL, locale, flags, parameters, result, exception, argumentInError);
}

}  // namespace qvx::host
