#include "host/image_list_object.h"

#include <olectl.h>

#include <algorithm>

#include "com/guard.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "host/form_window.h"

namespace qvx::host {

namespace {

// One picture; it knows its number as long as it is in a list.
class ImageObject final : public NamedObject {
  public:
    ImageObject(Text imageKey, ComPtr<IPictureDisp> imagePicture)
        : key(std::move(imageKey)), picture(std::move(imagePicture)) {
        AddReadOnly(u"Index", [this](const Call&) { return Variant(index); });
        AddReadOnly(u"Key", [this](const Call&) { return Variant(key); });
        AddProperty(u"Tag", [this](const Call& call) {
            if (call.put) tag = call.Value();
            return tag;
        });
        AddProperty(u"Picture", [this](const Call& call) {
            if (call.put) {
                auto given = call.Value().ToObject<IPictureDisp>();
                if (!given) ThrowTypeMismatch();
                picture = std::move(given);
            }
            return Variant(static_cast<IDispatch*>(picture.get()));
        });
    }

    int index = 0;
    Text key;
    Variant tag;
    ComPtr<IPictureDisp> picture;

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
            return Variant();
        });
        AddMethod(u"Clear", [this](const Call&) {
            images_.clear();
            return Variant();
        });
    }

    // Throws RunTimeError 457 for a key that is there already.
    ComPtr<ImageObject> Add(std::size_t position, Text key, ComPtr<IPictureDisp> picture) {
        if (!key.empty() && FindKey(key) != images_.end()) {
            throw RunTimeError(errors::keyAlreadyExists,
                               u"This key is already associated with an element of this collection");
        }
        const auto image = MakeObject<ImageObject>(std::move(key), std::move(picture));
        images_.insert(images_.begin() + static_cast<std::ptrdiff_t>(position), image);
        Renumber();
        return image;
    }
    std::size_t Count() const { return images_.size(); }
    // Throws RunTimeError 9 for a number or key that no image has, and 13 for what is neither.
    Variant Item(const Variant& numberOrKey) {
        return Variant(static_cast<IDispatch*>(images_[Find(numberOrKey)].get()));
    }

  private:
    using Images = std::vector<ComPtr<ImageObject>>;

    ~ImagesObject() override = default;

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
};

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

ComPtr<IPictureDisp> LoadPictureFile(const Text& folder, const Text& path) {
    constexpr int fileNotFound = 53;
    constexpr LONGLONG largest = 256 << 20;
    const bool rooted = path.find(u':') != Text::npos || path.substr(0, 1) == u"\\" || path.substr(0, 1) == u"/";
    const Text full = rooted ? path : folder + u"\\" + path;
    const auto fail = [&] { throw RunTimeError(fileNotFound, u"cannot read \"" + full + u"\""); };
    const HANDLE handle = CreateFileW(Wide(full), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE) fail();
    const UniqueKernelObject owner(handle);
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(handle, &size) || size.QuadPart > largest) fail();
    const auto bytes = static_cast<DWORD>(size.QuadPart);
    UniqueGlobal memory(GlobalAlloc(GMEM_MOVEABLE, bytes ? bytes : 1));
    if (!memory) throw std::bad_alloc();
    {
        const GlobalLockScope<char> lock(memory.Get());
        DWORD count = 0;
        if (!ReadFile(handle, lock.Get(), bytes, &count, nullptr) || count != bytes) fail();
    }
    ComPtr<IStream> stream;
    Check(CreateStreamOnHGlobal(memory.Get(), TRUE, stream.put()));
    memory.Detach();  // the stream's now
    ComPtr<IPictureDisp> picture;
    Check(OleLoadPicture(stream.get(), static_cast<LONG>(bytes), FALSE, IID_IPictureDisp, picture.put_void()));
    return picture;
}

ImageListControl::ImageListControl(HostForm& form, Block& block, FormControl* container)
    : FormControl(form, block, container) {
    const auto images = MakeObject<ImagesObject>();
    if (const Block* group = block.FindGroup(u"Images")) {
        for (const Entry& entry : group->entries) {
            if (!entry.block || entry.block->kind != Block::Kind::propertyGroup) continue;
            const Block& image = *entry.block;
            try {
                const Text file = image.TextOf(u"Picture");
                auto picture = file.empty() ? nullptr : LoadPictureFile(form.Folder(), file);
                const auto added = images->Add(images->Count(), image.TextOf(u"Key"), std::move(picture));
                added->tag = Variant(image.TextOf(u"Tag"));
            } catch (const RunTimeError& error) {
                throw FormFileError(image.lineNumber, error.Description());
            } catch (const ComError& error) {
                throw FormFileError(image.lineNumber, u"the picture of \"" + image.name + u"\" cannot be shown: " +
                                                          FailureText(error.Result()));
            }
        }
    }
    members_ = MakeObject<ImageListObject>(images);
    if (form.DesignMode()) box_.Open(form.ParentWindow(*this), PixelBounds(), u"img", false);
}

void ImageListControl::ApplyBounds(const RECT& pixels) {
    if (!box_.Handle()) return;
    SetWindowPos(box_.Handle(), nullptr, pixels.left, pixels.top, pixels.right - pixels.left,
                 pixels.bottom - pixels.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

ImageListControl::~ImageListControl() = default;

}  // namespace qvx::host
