#include "host/image_list_object.h"

#include <olectl.h>

#include <algorithm>

#include "com/guard.h"
#include "common/number_text.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "host/form_storage_win32.h"
#include "host/form_window.h"
#include "host/picture_names.h"

namespace qvx::host {

// One picture; it knows its number as long as it is in a list.
class ImageObject final : public NamedObject {
  public:
    ImageObject(Text imageKey, ComPtr<IPictureDisp> imagePicture)
        : key(std::move(imageKey)), picture(std::move(imagePicture)) {
        AddReadOnly(u"Index", [this](const Call&) { return Variant(index); });
        AddReadOnly(u"Key", [this](const Call&) { return Variant(key); });
        AddProperty(u"Tag", [this](const Call& call) {
            if (call.put) {
                tag = call.Value();
                if (changed) changed();
            }
            return tag;
        });
        AddProperty(u"Picture", [this](const Call& call) {
            if (call.put) {
                auto given = call.Value().ToObject<IPictureDisp>();
                if (!given) ThrowTypeMismatch();
                picture = std::move(given);
                if (changed) changed();
            }
            return Variant(static_cast<IDispatch*>(picture.get()));
        });
    }

    int index = 0;
    Text key;
    Variant tag;
    ComPtr<IPictureDisp> picture;
    std::function<void()> changed = {};

  private:
    ~ImageObject() override = default;
};

class ImagesObject final : public NamedObject {
  public:
    ImagesObject() {
        AddReadOnly(u"Count", [this](const Call&) { return Variant(static_cast<long>(images_.size())); });
        AddReadOnly(u"Item", [this](const Call& call) { return Item(call.At(0)); });
        SetDefaultMember(u"Item");
        AddEnumerator([this] { return std::vector<ComPtr<IDispatch>>(images_.begin(), images_.end()); });
        AddMethod(u"Add", [this](const Call& call) {
            const std::size_t count = images_.size();
            const long index = call.Has(0) ? call.Long(0) : static_cast<long>(count) + 1;
            if (index < 1 || static_cast<std::size_t>(index) > count + 1) ThrowOutOfRange();
            auto picture = call.Has(2) ? call.At(2).ToObject<IPictureDisp>() : nullptr;
            if (call.Has(2) && !picture) ThrowTypeMismatch();
            const auto image = Add(static_cast<std::size_t>(index) - 1, call.Has(1) ? call.String(1) : Text(), picture);
            return Variant(static_cast<IDispatch*>(image.get()));
        });
        AddMethod(u"Remove", [this](const Call& call) {
            images_.erase(images_.begin() + static_cast<std::ptrdiff_t>(Find(call.At(0))));
            Renumber();
            Changed();
            return Variant();
        });
        AddMethod(u"Clear", [this](const Call&) {
            images_.clear();
            Changed();
            return Variant();
        });
    }

    using Images = std::vector<ComPtr<ImageObject>>;
    const Images& All() const { return images_; }
    // Called after every change; set once the list has been loaded.
    std::function<void()> changed;

    // Throws RunTimeError 457 for a key that exists already.
    ComPtr<ImageObject> Add(std::size_t position, Text key, ComPtr<IPictureDisp> picture) {
        if (!key.empty() && FindKey(key) != images_.end()) {
            throw RunTimeError(errors::keyAlreadyExists,
                               u"This key is already associated with an element of this collection");
        }
        const auto image = MakeObject<ImageObject>(std::move(key), std::move(picture));
        image->changed = [this, life = std::weak_ptr<int>(life_)] {
            if (life.lock()) Changed();
        };
        images_.insert(images_.begin() + static_cast<std::ptrdiff_t>(position), image);
        Renumber();
        Changed();
        return image;
    }
    std::size_t Count() const { return images_.size(); }
    // Throws RunTimeError 9 for a number or key that no image has, and 13 for what is neither.
    Variant Item(const Variant& numberOrKey) {
        return Variant(static_cast<IDispatch*>(images_[Find(numberOrKey)].get()));
    }

  private:
    ~ImagesObject() override = default;

    void Changed() const {
        if (changed) changed();
    }

    [[noreturn]] static void ThrowOutOfRange() {
        throw RunTimeError(errors::subscriptOutOfRange, u"Subscript out of range");
    }
    Images::iterator FindKey(const Text& key) {
        return std::find_if(images_.begin(), images_.end(),
                            [&](const ComPtr<ImageObject>& image) { return EqualNoCase(image->key, key); });
    }
    std::size_t Find(const Variant& numberOrKey) {
        if (numberOrKey.Type() == VT_BSTR) {
            const auto found = FindKey(*numberOrKey.ToText());
            if (found == images_.end()) ThrowOutOfRange();
            return static_cast<std::size_t>(found - images_.begin());
        }
        const auto number = numberOrKey.ToLong();
        if (!number) ThrowTypeMismatch();
        if (*number < 1 || static_cast<std::size_t>(*number) > images_.size()) ThrowOutOfRange();
        return static_cast<std::size_t>(*number) - 1;
    }
    void Renumber() {
        for (std::size_t i = 0; i < images_.size(); ++i) images_[i]->index = static_cast<int>(i) + 1;
    }

    Images images_;
    std::shared_ptr<int> life_ = std::make_shared<int>(0);
};

namespace {

class ImageListObject final : public NamedObject {
  public:
    explicit ImageListObject(ComPtr<ImagesObject> images) : images_(std::move(images)) {
        AddReadOnly(u"ListImages", [this](const Call& call) {
            if (!call.Has(0)) return Variant(static_cast<IDispatch*>(images_.get()));
            return images_->Item(call.At(0));
        });
    }

  private:
    ~ImageListObject() override = default;
    ComPtr<ImagesObject> images_;
};

}  // namespace

ImageListControl::ImageListControl(HostForm& form, const Block& block, FormControl* container)
    : FormControl(form, block, container) {
    const auto images = MakeObject<ImagesObject>();
    images_ = images;
    if (const Block* group = block.FindGroup(u"Images")) {
        for (const Entry& entry : group->entries) {
            if (!entry.block || entry.block->kind != Block::Kind::propertyGroup) continue;
            const Block& image = *entry.block;
            try {
                const Text file = image.TextOf(u"Picture");
                auto picture = file.empty() ? nullptr : form.Pictures().Load(form.Folder(), file);
                const auto added = images->Add(images->Count(), image.TextOf(u"Key"), std::move(picture));
                added->tag = Variant(image.TextOf(u"Tag"));
            } catch (const RunTimeError& error) {
                throw FormFileError(image.lineNumber, Text(error.Description()));
            } catch (const ComError& error) {
                throw FormFileError(image.lineNumber, u"the picture of \"" + image.name + u"\" cannot be shown: " +
                                                          FailureText(error.Result()));
            }
        }
    }
    members_ = MakeObject<ImageListObject>(images);
    images->changed = [this] { NoteChange(); };
    if (form.DesignMode()) box_.Open(form.ParentWindow(*this), PixelBounds(), u"img", false);
}

void ImageListControl::ApplyBounds(const RECT& pixels) {
    if (!box_.Handle()) return;
    SetWindowPos(box_.Handle(), nullptr, pixels.left, pixels.top, pixels.right - pixels.left,
                 pixels.bottom - pixels.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

ImageListControl::~ImageListControl() { images_->changed = nullptr; }

namespace {

// A picture's own bytes, as a file of its kind holds them. Throws ComError.
std::string PictureBytes(IPictureDisp* picture) {
    const auto held = ComPtr<IPictureDisp>(picture).As<IPicture>();
    if (!held) throw ComError(E_NOINTERFACE);
    ComPtr<IStream> stream;
    Check(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()));
    LONG written = 0;
    Check(held->SaveAsFile(stream.get(), TRUE, &written));
    STATSTG about{};
    Check(stream->Stat(&about, STATFLAG_NONAME));
    std::string bytes(static_cast<std::size_t>(about.cbSize.QuadPart), '\0');
    Check(stream->Seek({}, STREAM_SEEK_SET, nullptr));
    ULONG read = 0;
    Check(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read));
    bytes.resize(read);
    if (bytes.empty()) throw ComError(E_FAIL);
    return bytes;
}

// Writes the picture beside the form under a name that is free, or is that of a file with the very same bytes. Returns
// the name without its folder. Throws RunTimeError 75.
Text StorePicture(HostForm& form, const Text& list, const Text& key, IPictureDisp* picture) {
    const std::string bytes = PictureBytes(picture);
    const bool icon = bytes.size() > 4 && bytes.compare(0, 4, std::string("\0\0\1\0", 4)) == 0;
    const Text stem = PictureFileName(list, key);
    for (int number = 1; number < 10000; ++number) {
        const Text name = stem + (number > 1 ? u"-" + IntegerToText(number) : Text()) + (icon ? u".ico" : u".bmp");
        const Text path = form.Folder() + u"\\" + name;
        if (const auto there = TryReadFileBytes(path)) {
            if (*there == bytes) return name;
            continue;
        }
        if (GetFileAttributesW(Wide(path)) != INVALID_FILE_ATTRIBUTES) continue;
        ReplaceFileBytes(path, bytes);
        if (form.Designer()) form.Designer()->OnFileMade(path);
        return name;
    }
    throw RunTimeError(errors::pathFileAccess, u"cannot write the pictures of \"" + list + u"\"");
}

// The file that the picture came from, or one that is written for it now. Throws RunTimeError 75.
Text FileOf(HostForm& form, const Text& list, const Text& key, IPictureDisp* picture) {
    // A property page removes all pictures and adds them again; the same picture keeps its file.
    if (const Text* known = form.Pictures().FileOf(picture)) return *known;
    const Text file = StorePicture(form, list, key, picture);
    form.Pictures().Remember(picture, file);
    return file;
}

}  // namespace

void ImageListControl::SaveOwn(SavedProperties& saved) {
    if (!Form().Designer() || images_->All().empty()) return;
    auto group = std::make_shared<SavedGroup>();
    int number = 0;
    for (const auto& image : images_->All()) {
        auto one = std::make_shared<SavedGroup>();
        if (!image->key.empty()) one->properties.Add(u"Key", image->key);
        const Text tag = image->tag.ToText().value_or(Text());
        if (!tag.empty()) one->properties.Add(u"Tag", tag);
        if (image->picture) one->properties.Add(u"Picture", FileOf(Form(), Title(), image->key, image->picture.get()));
        group->properties.AddGroup(u"ListImage" + IntegerToText(++number), std::move(one));
    }
    saved.AddGroup(u"Images", std::move(group));
}

}  // namespace qvx::host
