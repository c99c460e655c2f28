// Controls embedded in documents: pictures at other resolutions and in metafiles, pictures that containers keep, and
// what a container is told about keys, changes and saving.
#include <gtest/gtest.h>
#include <olectl.h>

#include "Qvx.h"
#include "tests/support/container.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/each_control.h"
#include "tests/support/server_under_test.h"
#include "win/extent.h"

namespace qvx::test {
namespace {

constexpr COLORREF marker = RGB(1, 2, 3);
constexpr int left = 20;
constexpr int top = 10;

// A designer's container, in which every control has a picture.
class EmbeddedControl : public ::testing::TestWithParam<const CLSID*> {
  protected:
    EmbeddedControl() : container_(HostInMode(false)) {
        container_.Place(ServerUnderTest::Get().Create(*GetParam()));
        SIZEL extent{2540, 1270};
        EXPECT_EQ(S_OK, Query<IOleObject>(container_.Control())->SetExtent(DVASPECT_CONTENT, &extent));
        EXPECT_EQ(S_OK, Query<IViewObject2>(container_.Control())->GetExtent(DVASPECT_CONTENT, -1, nullptr, &extent));
        size_ = HimetricToPixels(extent, {96, 96});
    }
    RECTL Bounds(int times = 1) const {
        return {left * times, top * times, (left + size_.width) * times, (top + size_.height) * times};
    }
    void Draw(HDC dc, const RECTL& bounds, const RECTL* whole = nullptr) {
        EXPECT_EQ(S_OK, Query<IViewObject>(container_.Control())
                            ->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, whole, nullptr, 0));
    }
    // A device of so many times the screen's resolution.
    PixelPicture On(int times, const std::function<void(HDC)>& draw) const {
        const Size whole{(size_.width + 2 * left) * times, (size_.height + 2 * top) * times};
        return PictureOf(whole, [&](HDC dc) {
            const UniqueBrush brush(CreateSolidBrush(marker));
            const RECT all{0, 0, whole.width, whole.height};
            FillRect(dc, &all, brush.Get());
            draw(dc);
        });
    }
    // The picture as it is on the screen, and nothing around it.
    void ExpectPicture(const PixelPicture& picture, int times, double least) {
        const RECTL bounds = Bounds(times);
        const PixelPicture screen = On(1, [&](HDC dc) { Draw(dc, Bounds()); });
        int outside = 0;
        int same = 0;
        for (int y = 0; y < picture.size.height; ++y) {
            for (int x = 0; x < picture.size.width; ++x) {
                const bool inside = x >= bounds.left && x < bounds.right && y >= bounds.top && y < bounds.bottom;
                const COLORREF color = picture.At(x, y);
                if (!inside) outside += color != marker;
                if (inside) same += color == screen.At(x / times, y / times);
            }
        }
        EXPECT_EQ(0, outside);
        EXPECT_GE(same, least * size_.width * size_.height * times * times);
    }

    Container container_;
    Size size_;
};

INSTANTIATE_TEST_SUITE_P(Controls, EmbeddedControl, ::testing::ValuesIn(EachControlId()), ControlName);

TEST_P(EmbeddedControl, FillsItsBoundsOnEveryDevice) {
    constexpr int times = 6;  // a printer of 576 dots per inch
    struct Device {
        const char* name;
        std::function<void(HDC)> draw;
    };
    const Device devices[] = {
        {"pixels", [&](HDC dc) { Draw(dc, Bounds(times)); }},
        {"the screen's pixels",
         [&](HDC dc) {
             SetMapMode(dc, MM_ISOTROPIC);
             SetWindowExtEx(dc, 100, 100, nullptr);
             SetViewportExtEx(dc, 100 * times, 100 * times, nullptr);
             Draw(dc, Bounds());
         }},
        {"an axis that points up",
         [&](HDC dc) {
             SetMapMode(dc, MM_ANISOTROPIC);
             SetWindowExtEx(dc, 100, 100, nullptr);
             SetViewportExtEx(dc, 100 * times, -100 * times, nullptr);
             const RECTL bounds = Bounds();
             Draw(dc, {bounds.left, -bounds.top, bounds.right, -bounds.bottom});
         }},
        {"a world of its own",
         [&](HDC dc) {
             SetGraphicsMode(dc, GM_ADVANCED);
             const XFORM world{times, 0, 0, times, left * times, top * times};
             SetWorldTransform(dc, &world);
             Draw(dc, {0, 0, size_.width, size_.height});
             XFORM after{};
             GetWorldTransform(dc, &after);
             EXPECT_EQ(times, after.eM11);
         }},
    };
    for (const Device& device : devices) {
        SCOPED_TRACE(device.name);
        ExpectPicture(On(times, device.draw), times, 0.8);
    }
}

TEST_P(EmbeddedControl, IsTheSameInAMetafile) {
    for (const int times : {1, 6}) {
        SCOPED_TRACE(times);
        const Size whole{size_.width + 2 * left, size_.height + 2 * top};
        const RECTL all{0, 0, whole.width, whole.height};
        const HDC screen = GetDC(nullptr);
        const RECT frame{0, 0,
                         MulDiv(whole.width, 100 * GetDeviceCaps(screen, HORZSIZE), GetDeviceCaps(screen, HORZRES)),
                         MulDiv(whole.height, 100 * GetDeviceCaps(screen, VERTSIZE), GetDeviceCaps(screen, VERTRES))};
        ReleaseDC(nullptr, screen);
        const HDC enhanced = CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
        Draw(enhanced, Bounds(), &all);
        const HENHMETAFILE enhancedFile = CloseEnhMetaFile(enhanced);
        const RECT place{0, 0, whole.width * times, whole.height * times};
        ExpectPicture(On(times, [&](HDC dc) { PlayEnhMetaFile(dc, enhancedFile, &place); }), times, 0.8);
        DeleteEnhMetaFile(enhancedFile);

        const HDC old = CreateMetaFileW(nullptr);
        Draw(old, Bounds(), &all);
        const HMETAFILE oldFile = CloseMetaFile(old);
        ExpectPicture(On(times,
                         [&](HDC dc) {
                             SetMapMode(dc, MM_ANISOTROPIC);
                             SetViewportExtEx(dc, place.right, place.bottom, nullptr);
                             SaveDC(dc);
                             PlayMetaFile(dc, oldFile);
                             EXPECT_TRUE(RestoreDC(dc, -1)) << "what the player had saved";
                         }),
                      times, times == 1 ? 1 : 0.8);
        DeleteMetaFile(oldFile);
    }
}

TEST_P(EmbeddedControl, IsKeptAsAPictureByContainers) {
    const auto data = Query<IDataObject>(container_.Control());
    const FORMATETC formats[] = {{CF_ENHMETAFILE, nullptr, DVASPECT_CONTENT, -1, TYMED_ENHMF},
                                 {CF_METAFILEPICT, nullptr, DVASPECT_CONTENT, -1, TYMED_MFPICT}};
    ComPtr<IEnumFORMATETC> offered;
    ASSERT_EQ(S_OK, data->EnumFormatEtc(DATADIR_GET, offered.put()));
    SIZEL extent{};
    EXPECT_EQ(S_OK, Query<IOleObject>(container_.Control())->GetExtent(DVASPECT_CONTENT, &extent));
    for (const FORMATETC& format : formats) {
        FORMATETC next{};
        EXPECT_EQ(S_OK, offered->Next(1, &next, nullptr));
        EXPECT_EQ(format.cfFormat, next.cfFormat);
    }
    const auto place = [&](int times) {
        const RECTL bounds = Bounds(times);
        return RECT{bounds.left, bounds.top, bounds.right, bounds.bottom};
    };
    STGMEDIUM medium{};
    FORMATETC format = formats[0];
    ASSERT_EQ(S_OK, data->GetData(&format, &medium));
    ENHMETAHEADER header{};
    GetEnhMetaFileHeader(medium.hEnhMetaFile, sizeof header, &header);
    EXPECT_NEAR(extent.cx, header.rclFrame.right - header.rclFrame.left, 20) << "half a pixel";
    EXPECT_NEAR(extent.cy, header.rclFrame.bottom - header.rclFrame.top, 20);
    for (const int times : {1, 6}) {
        const RECT area = place(times);
        ExpectPicture(On(times, [&](HDC dc) { PlayEnhMetaFile(dc, medium.hEnhMetaFile, &area); }), times, 0.8);
    }
    ReleaseStgMedium(&medium);
    // The system's own cache, as a document that is shown without its controls has it.
    format = formats[1];
    ComPtr<IUnknown> kept;
    ASSERT_EQ(S_OK, CreateDataCache(nullptr, *GetParam(), IID_IUnknown, kept.put_void()));
    DWORD connection = 0;
    const auto cache = kept.As<IOleCache>();
    ASSERT_TRUE(SUCCEEDED(cache->Cache(&format, ADVF_PRIMEFIRST, &connection)));
    ASSERT_EQ(S_OK, cache->InitCache(data.get()));
    SIZEL size{};
    EXPECT_EQ(S_OK, kept.As<IViewObject2>()->GetExtent(DVASPECT_CONTENT, -1, nullptr, &size));
    EXPECT_EQ(extent.cx, size.cx);
    EXPECT_EQ(extent.cy, size.cy);
    for (const int times : {1, 6}) {
        const RECT area = place(times);
        const auto draw = [&](HDC dc) { EXPECT_EQ(S_OK, OleDraw(kept.get(), DVASPECT_CONTENT, dc, &area)); };
        ExpectPicture(On(times, draw), times, times == 1 ? 1 : 0.8);
    }
    struct Refused {
        HRESULT why;
        FORMATETC format;
    };
    for (Refused refused : {Refused{DV_E_FORMATETC, {CF_TEXT, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL}},
                            {DV_E_DVASPECT, {CF_ENHMETAFILE, nullptr, DVASPECT_ICON, -1, TYMED_ENHMF}},
                            {DV_E_LINDEX, {CF_ENHMETAFILE, nullptr, DVASPECT_CONTENT, 0, TYMED_ENHMF}},
                            {DV_E_TYMED, {CF_METAFILEPICT, nullptr, DVASPECT_CONTENT, -1, TYMED_ENHMF}}}) {
        EXPECT_EQ(refused.why, data->QueryGetData(&refused.format));
        EXPECT_EQ(refused.why, data->GetData(&refused.format, &medium));
    }
}

TEST_P(EmbeddedControl, AnnouncesEveryNewPicture) {
    IUnknown* control = container_.Control();
    const auto object = Query<IOleObject>(control);
    const auto data = Query<IDataObject>(control);
    ComPtr<IOleClientSite> site;
    ASSERT_EQ(S_OK, object->GetClientSite(site.put()));
    FORMATETC format{CF_ENHMETAFILE, nullptr, DVASPECT_CONTENT, -1, TYMED_ENHMF};
    DWORD connection = 0;
    const auto sink = site.As<IAdviseSink>();
    const auto expectNext = [&](const char* after, const std::vector<std::string>& calls) {
        EXPECT_EQ(calls, container_.Calls()) << after;
        container_.Calls().clear();
    };
    container_.Calls().clear();
    ASSERT_EQ(S_OK, data->DAdvise(&format, ADVF_PRIMEFIRST, sink.get(), &connection));
    expectNext("connecting", {"OnDataChange"});
    SIZEL extent{5080, 2540};
    EXPECT_EQ(S_OK, object->SetExtent(DVASPECT_CONTENT, &extent));
    expectNext("another size", {"OnDataChange"});
    EXPECT_EQ(S_OK, LoadFromBag(control, SaveToBag(control).get()));
    expectNext("loading", {"OnDataChange"});
    EXPECT_EQ(S_OK, data->DUnadvise(connection));
    EXPECT_EQ(OLE_E_NOCONNECTION, data->DUnadvise(connection));
    ASSERT_EQ(S_OK, data->DAdvise(&format, ADVF_NODATA | ADVF_DATAONSTOP, sink.get(), &connection));
    EXPECT_EQ(S_OK, object->Close(OLECLOSE_NOSAVE));
    expectNext("closing", {"OnDataChange"});
}

// Of a page that is shown later, or a window that opens with its controls in place.
TEST_P(EmbeddedControl, AppearsWithItsContainer) {
    Container hidden(HostInMode(true));
    ShowWindow(hidden.Window(), SW_HIDE);
    hidden.Place(ServerUnderTest::Get().Create(*GetParam()));
    hidden.Activate();
    EXPECT_FALSE(IsWindowVisible(hidden.ControlWindow()));
    ShowWindow(hidden.Window(), SW_SHOW);
    EXPECT_EQ(!IsInvisible(GetParam()), IsWindowVisible(hidden.ControlWindow()) != FALSE);
    if (IsInvisible(GetParam())) return;
    container_.SetAmbient(DISPID_AMBIENT_USERMODE, Variant(true));
    const PixelPicture late = PictureOnScreen(hidden.ControlWindow());
    container_.Activate();
    SetWindowPos(container_.Window(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    EXPECT_EQ(PictureOnScreen(container_.ControlWindow()).pixels, late.pixels);
}

// What a container asks before it uses a key for its default or cancel button, or for an access key.
TEST(ControlInfo, NamesTheKeysThatAControlUses) {
    struct Case {
        const CLSID& id;
        bool runs;
        const wchar_t* property;
        Variant value;
        DWORD flags;
        int accelerators;  // as a key, and as its character
    };
    const Case cases[] = {
        {CLSID_Button, true, L"Caption", Variant(u"&Post"), 0, 2},
        {CLSID_RButton, true, L"Caption", Variant(u"Post"), CTRLINFO_EATS_RETURN, 2},
        {CLSID_ComboGrid, true, L"Rows", Variant(3), CTRLINFO_EATS_RETURN, 0},
        {CLSID_ComboGrid, false, L"Rows", Variant(3), 0, 0},
        {CLSID_TextEdit, true, L"UseEnterKey", Variant(false), 0, 0},
        {CLSID_TextEdit, true, L"UseEnterKey", Variant(true), CTRLINFO_EATS_RETURN, 0},
    };
    for (const Case& c : cases) {
        Container container(HostInMode(c.runs));
        container.Place(ServerUnderTest::Get().Create(c.id));
        container.ActivateUi();
        Put(container.Automation().get(), c.property, {c.value});
        CONTROLINFO info{};
        info.cb = sizeof info;
        EXPECT_EQ(S_OK, Query<IOleControl>(container.Control())->GetControlInfo(&info));
        EXPECT_EQ(c.flags, info.dwFlags);
        EXPECT_EQ(c.accelerators, info.cAccel);
    }
}

}  // namespace
}  // namespace qvx::test
