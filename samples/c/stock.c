/* A window with a ComboGrid in plain C: the least that a program provides to contain a control. The control needs no
   registration: the program's manifest names the library, whose Qvx.ocx and Qvx.manifest are beside the program.

   cc stock.c Qvx_i.c -municode -mwindows -lole32 -loleaut32 -luuid, with stock.manifest as the program's manifest. */
#define COBJMACROS
#include <windows.h>

#include <olectl.h>

#include "Qvx.h"

#define AFTER_CELL_CHANGE 2 /* the event's number in the type library */

static HWND window;
static IOleObject* object; /* the control as its container sees it */
static _ComboGrid* grid;   /* the same with its properties and methods */
static IOleInPlaceObject* place;
static IOleInPlaceActiveObject* keys;
static IConnectionPoint* point;
static DWORD connection;

/* The three methods of an object that lives as long as the program, so that its references need not be counted. */
#define PERMANENT(Interface, ask)                                                                \
    static HRESULT STDMETHODCALLTYPE Interface##_Ask(Interface* self, REFIID id, void** found) { \
        (void)self;                                                                              \
        return ask(id, found);                                                                   \
    }                                                                                            \
    static ULONG STDMETHODCALLTYPE Interface##_Keep(Interface* self) {                           \
        (void)self;                                                                              \
        return 2;                                                                                \
    }                                                                                            \
    static ULONG STDMETHODCALLTYPE Interface##_Drop(Interface* self) {                           \
        (void)self;                                                                              \
        return 1;                                                                                \
    }

static HRESULT AskSite(REFIID id, void** found);
static HRESULT AskEvents(REFIID id, void** found);
PERMANENT(IOleClientSite, AskSite)
PERMANENT(IOleInPlaceSite, AskSite)
PERMANENT(IDispatch, AskEvents)

/* ---- The site: where the control is. ---- */

static HRESULT STDMETHODCALLTYPE SaveObject(IOleClientSite* self) {
    (void)self;
    return S_OK;
}

static HRESULT STDMETHODCALLTYPE GetMoniker(IOleClientSite* self, DWORD assign, DWORD which, IMoniker** moniker) {
    (void)self, (void)assign, (void)which;
    *moniker = NULL;
    return E_NOTIMPL; /* nothing links to this control */
}

static HRESULT STDMETHODCALLTYPE GetContainer(IOleClientSite* self, IOleContainer** container) {
    (void)self;
    *container = NULL;
    return E_NOINTERFACE; /* the control is alone */
}

static HRESULT STDMETHODCALLTYPE ShowObject(IOleClientSite* self) {
    (void)self;
    return S_OK;
}

static HRESULT STDMETHODCALLTYPE OnShowWindow(IOleClientSite* self, BOOL show) {
    (void)self, (void)show;
    return S_OK;
}

static HRESULT STDMETHODCALLTYPE RequestNewObjectLayout(IOleClientSite* self) {
    (void)self;
    return E_NOTIMPL; /* the window decides on the size */
}

static IOleClientSiteVtbl siteMethods = {IOleClientSite_Ask, IOleClientSite_Keep, IOleClientSite_Drop,
                                         SaveObject,         GetMoniker,          GetContainer,
                                         ShowObject,         OnShowWindow,        RequestNewObjectLayout};
static IOleClientSite site = {&siteMethods};

static HRESULT STDMETHODCALLTYPE GetHostWindow(IOleInPlaceSite* self, HWND* found) {
    (void)self;
    *found = window;
    return S_OK;
}

static HRESULT STDMETHODCALLTYPE HelpMode(IOleInPlaceSite* self, BOOL enter) {
    (void)self, (void)enter;
    return E_NOTIMPL; /* F1 is an ordinary key here */
}

/* Activation goes through several stages, of which this program has nothing to do in any. */
static HRESULT STDMETHODCALLTYPE Agree(IOleInPlaceSite* self) {
    (void)self;
    return S_OK;
}

static HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceSite* self, IOleInPlaceFrame** frame,
                                                  IOleInPlaceUIWindow** inner, LPRECT position, LPRECT clip,
                                                  LPOLEINPLACEFRAMEINFO info) {
    (void)self;
    *frame = NULL; /* no menus or bars to share */
    *inner = NULL;
    GetClientRect(window, position);
    *clip = *position;
    info->fMDIApp = FALSE;
    info->hwndFrame = window;
    info->haccel = NULL;
    info->cAccelEntries = 0;
    return S_OK;
}

static HRESULT STDMETHODCALLTYPE Scroll(IOleInPlaceSite* self, SIZE by) {
    (void)self, (void)by;
    return E_NOTIMPL; /* there is nothing beside the control */
}

static HRESULT STDMETHODCALLTYPE OnUIDeactivate(IOleInPlaceSite* self, BOOL undoable) {
    (void)self, (void)undoable;
    return S_OK;
}

static HRESULT STDMETHODCALLTYPE OnPosRectChange(IOleInPlaceSite* self, LPCRECT wanted) {
    (void)self;
    return IOleInPlaceObject_SetObjectRects(place, wanted, wanted);
}

static IOleInPlaceSiteVtbl placeMethods = {IOleInPlaceSite_Ask,
                                           IOleInPlaceSite_Keep,
                                           IOleInPlaceSite_Drop,
                                           GetHostWindow,
                                           HelpMode,
                                           Agree,
                                           Agree,
                                           Agree,
                                           GetWindowContext,
                                           Scroll,
                                           OnUIDeactivate,
                                           Agree,
                                           Agree,
                                           Agree,
                                           OnPosRectChange};
static IOleInPlaceSite inPlaceSite = {&placeMethods};

static HRESULT AskSite(REFIID id, void** found) {
    if (IsEqualIID(id, &IID_IUnknown) || IsEqualIID(id, &IID_IOleClientSite)) {
        *found = &site;
    } else if (IsEqualIID(id, &IID_IOleWindow) || IsEqualIID(id, &IID_IOleInPlaceSite)) {
        *found = &inPlaceSite;
    } else {
        *found = NULL;
    }
    return *found ? S_OK : E_NOINTERFACE;
}

/* ---- The events. ---- */

static HRESULT STDMETHODCALLTYPE GetTypeInfoCount(IDispatch* self, UINT* count) {
    (void)self;
    *count = 0;
    return S_OK;
}

static HRESULT STDMETHODCALLTYPE GetTypeInfo(IDispatch* self, UINT index, LCID locale, ITypeInfo** info) {
    (void)self, (void)index, (void)locale;
    *info = NULL;
    return E_NOTIMPL; /* the control calls by numbers */
}

static HRESULT STDMETHODCALLTYPE GetIDsOfNames(IDispatch* self, REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                               DISPID* ids) {
    (void)self, (void)id, (void)names, (void)count, (void)locale, (void)ids;
    return DISP_E_UNKNOWNNAME;
}

/* A stock of 0 pieces is refused: the grid puts the old text back. The window's title shows the last entry. */
static HRESULT STDMETHODCALLTYPE Invoke(IDispatch* self, DISPID event, REFIID id, LCID locale, WORD flags,
                                        DISPPARAMS* given, VARIANT* result, EXCEPINFO* exception, UINT* wrong) {
    (void)self, (void)id, (void)locale, (void)flags, (void)result, (void)exception, (void)wrong;
    if (event == AFTER_CELL_CHANGE && given->cArgs == 5) {
        /* Row, Col, OldData, NewData, Cancel, the last first. */
        const VARIANT* cancel = &given->rgvarg[0];
        const VARIANT* text = &given->rgvarg[1];
        const VARIANT* col = &given->rgvarg[3];
        wchar_t title[80] = L"Stock - ";
        if (V_VT(col) != VT_I4 || V_VT(text) != VT_BSTR) return S_OK;
        if (V_I4(col) == 2 && lstrcmpW(V_BSTR(text), L"0") == 0) {
            *V_BOOLREF(cancel) = VARIANT_TRUE;
            SetWindowTextW(window, L"Stock - refused");
            return S_OK;
        }
        lstrcpynW(title + 8, V_BSTR(text), 80 - 8);
        SetWindowTextW(window, title);
    }
    return S_OK;
}

static IDispatchVtbl eventMethods = {IDispatch_Ask, IDispatch_Keep, IDispatch_Drop, GetTypeInfoCount,
                                     GetTypeInfo,   GetIDsOfNames,  Invoke};
static IDispatch events = {&eventMethods};

static HRESULT AskEvents(REFIID id, void** found) {
    const BOOL known =
        IsEqualIID(id, &IID_IUnknown) || IsEqualIID(id, &IID_IDispatch) || IsEqualIID(id, &DIID___ComboGrid);
    *found = known ? &events : NULL;
    return known ? S_OK : E_NOINTERFACE;
}

/* ---- The control. ---- */

static void Put(HRESULT(STDMETHODCALLTYPE* put)(_ComboGrid*, BSTR), const wchar_t* value) {
    const BSTR text = SysAllocString(value);
    put(grid, text);
    SysFreeString(text);
}

static void Listen(void) {
    IConnectionPointContainer* points = NULL;
    if (FAILED(IOleObject_QueryInterface(object, &IID_IConnectionPointContainer, (void**)&points))) return;
    if (SUCCEEDED(IConnectionPointContainer_FindConnectionPoint(points, &DIID___ComboGrid, &point))) {
        IConnectionPoint_Advise(point, (IUnknown*)&events, &connection);
    }
    IConnectionPointContainer_Release(points);
}

static BOOL OpenGrid(void) {
    IPersistStreamInit* state = NULL;
    RECT client;
    if (FAILED(CoCreateInstance(&CLSID_ComboGrid, NULL, CLSCTX_INPROC_SERVER, &IID_IOleObject, (void**)&object)))
        return FALSE;
    IOleObject_SetClientSite(object, &site);
    if (SUCCEEDED(IOleObject_QueryInterface(object, &IID_IPersistStreamInit, (void**)&state))) {
        IPersistStreamInit_InitNew(state);
        IPersistStreamInit_Release(state);
    }
    if (FAILED(IOleObject_QueryInterface(object, &IID__ComboGrid, (void**)&grid)) ||
        FAILED(IOleObject_QueryInterface(object, &IID_IOleInPlaceObject, (void**)&place)) ||
        FAILED(IOleObject_QueryInterface(object, &IID_IOleInPlaceActiveObject, (void**)&keys)))
        return FALSE;
    Put(grid->lpVtbl->put_FormatString, L"|<Article|>Pieces");
    Put(grid->lpVtbl->put_ColumnsDataType, L";Pieces-0;");
    _ComboGrid_put_ColWidth(grid, 1, 3000);
    Listen();
    GetClientRect(window, &client);
    return SUCCEEDED(IOleObject_DoVerb(object, OLEIVERB_UIACTIVATE, NULL, &site, 0, window, &client));
}

static void CloseGrid(void) {
    if (point) {
        IConnectionPoint_Unadvise(point, connection);
        IConnectionPoint_Release(point);
    }
    if (keys) IOleInPlaceActiveObject_Release(keys);
    if (place) {
        IOleInPlaceObject_InPlaceDeactivate(place);
        IOleInPlaceObject_Release(place);
    }
    if (grid) _ComboGrid_Release(grid);
    if (object) {
        IOleObject_Close(object, OLECLOSE_NOSAVE);
        IOleObject_SetClientSite(object, NULL);
        IOleObject_Release(object);
    }
}

/* ---- The window. ---- */

static LRESULT CALLBACK OnMessage(HWND self, UINT message, WPARAM wParam, LPARAM lParam) {
    RECT client;
    switch (message) {
        case WM_SIZE:
            GetClientRect(self, &client);
            if (place) IOleInPlaceObject_SetObjectRects(place, &client, &client);
            return 0;
        case WM_SETFOCUS:
            if (object) IOleObject_DoVerb(object, OLEIVERB_UIACTIVATE, NULL, &site, 0, self, NULL);
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(self, message, wParam, lParam);
    }
}

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous, LPWSTR line, int show) {
    const WNDCLASSW look = {.lpfnWndProc = OnMessage,
                            .hInstance = instance,
                            .hCursor = LoadCursorW(NULL, (LPCWSTR)IDC_ARROW),
                            .lpszClassName = L"Stock"};
    MSG message;
    (void)previous, (void)line;
    if (FAILED(OleInitialize(NULL))) return 1;
    RegisterClassW(&look);
    window = CreateWindowExW(0, L"Stock", L"Stock", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT,
                             480, 320, NULL, NULL, instance, NULL);
    if (!OpenGrid()) {
        MessageBoxW(NULL, L"Qvx.ocx is neither beside this program nor registered.", L"Stock", MB_ICONERROR);
        return 1;
    }
    ShowWindow(window, show);
    while (GetMessageW(&message, NULL, 0, 0) > 0) {
        /* The control sees the keys first, and takes those that it uses itself. */
        if (IOleInPlaceActiveObject_TranslateAccelerator(keys, &message) == S_OK) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    CloseGrid();
    OleUninitialize();
    return 0;
}
