#include "host/menu_window.h"

#include "common/run_time_error.h"

namespace qvx::host {

class MenuBar::Object final : public NamedObject {
  public:
    Object(MenuBar& bar, unsigned id) : bar_(&bar), id_(id) {
        AddReadOnly(u"Name", [this](const Call&) { return Variant(Item().name); });
        AddReadOnly(u"Index", [this](const Call&) {
            constexpr int notAnArray = 343;
            if (Item().index < 0) throw RunTimeError(notAnArray, u"Object not an array");
            return Variant(Item().index);
        });
        AddProperty(u"Caption", [this](const Call& call) {
            if (call.put) {
                Item().caption = call.StringValue();
                bar_->Update();
            }
            return Variant(Item().caption);
        });
        AddFlag(u"Enabled", &MenuItem::enabled);
        AddFlag(u"Visible", &MenuItem::visible);
        AddFlag(u"Checked", &MenuItem::checked);
    }
    void Forget() { bar_ = nullptr; }

  private:
    ~Object() override = default;

    void AddFlag(const char16_t* name, bool MenuItem::*flag) {
        AddProperty(name, [this, flag](const Call& call) {
            if (call.put) {
                Item().*flag = call.BoolValue();
                bar_->Update();
            }
            return Variant(Item().*flag);
        });
    }
    MenuItem& Item() const {
        MenuItem* item = bar_ ? bar_->Find(id_) : nullptr;
        if (!item) ThrowObjectNotSet();
        return *item;
    }

    MenuBar* bar_;
    unsigned id_;
};

MenuBar::MenuBar() = default;

MenuBar::~MenuBar() {
    for (auto& [id, object] : objects_) object->Forget();
}

void MenuBar::Show(HWND window, std::vector<MenuItem> items) {
    window_ = window;
    items_ = std::move(items);
    Update();
}

HMENU MenuBar::Build(const std::vector<MenuItem>& items, bool bar) const {
    const HMENU menu = bar ? CreateMenu() : CreatePopupMenu();
    for (const MenuItem& item : items) {
        if (!item.visible) continue;
        if (item.caption == u"-" && !bar) {
            AppendMenuW(menu, MF_SEPARATOR, item.id, nullptr);
            continue;
        }
        Text caption = item.caption;
        if (const Text keys = ShortcutText(ParseShortcut(item.shortcut)); !keys.empty()) caption += u"\t" + keys;
        const UINT state = (item.enabled ? MF_ENABLED : MF_GRAYED) | (item.checked ? MF_CHECKED : MF_UNCHECKED);
        const bool popup = !item.items.empty();
        const UINT_PTR target = popup ? reinterpret_cast<UINT_PTR>(Build(item.items, false)) : item.id;
        AppendMenuW(menu, MF_STRING | state | (popup ? MF_POPUP : 0u), target, Wide(caption));
    }
    return menu;
}

void MenuBar::Update() {
    if (!window_) return;
    const HMENU old = GetMenu(window_);
    SetMenu(window_, items_.empty() ? nullptr : Build(items_, true));
    if (old) DestroyMenu(old);
}

MenuItem* MenuBar::Find(unsigned id) {
    return FindMenuItem(items_, [&](const MenuItem& item) { return item.id == id; });
}

MenuItem* MenuBar::Find(TextView name) {
    return FindMenuItem(items_, [&](const MenuItem& item) { return SameName(item.name, name); });
}

const MenuItem* MenuBar::FindShortcut(Shortcut pressed) const { return host::FindShortcut(items_, pressed); }

IDispatch* MenuBar::Automation(const MenuItem& item) {
    auto& object = objects_[item.id];
    if (!object) object = MakeObject<Object>(*this, item.id);
    return object.get();
}

}  // namespace qvx::host
