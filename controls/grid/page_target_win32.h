// What pages are drawn on: a printer, or one file for each page.
#pragma once

#include <windows.h>

#include <vector>

#include "common/geometry.h"
#include "common/text.h"
#include "win/handles.h"

namespace qvx::grid {

// The pages are drawn one after the other. Without Finish, the target is as it was before, as far as that is possible.
class PageTarget {
  public:
    virtual ~PageTarget() = default;
    // The resolution, and the room between the margins in its pixels.
    Dpi Resolution() const { return dpi_; }
    const Rect& Room() const { return room_; }
    // Returns what the next page is drawn on until End is called.
    virtual HDC Begin() = 0;
    virtual void End() = 0;
    virtual void Finish() = 0;

  protected:
    PageTarget() = default;
    // The sheet of paper, and the part of it that can be printed on, in pixels from the corner of that part.
    void SetPaper(Dpi dpi, const Rect& sheet, Size printable);

  private:
    Dpi dpi_;
    Rect room_;
};

class PrinterPages final : public PageTarget {
  public:
    // With a file name, the printer's output goes there.
    PrinterPages(UniqueMemoryDc dc, const Text& title, const Text& fileName);
    ~PrinterPages() override;
    // Whether the user has cancelled what the system asks for itself, such as the name of a file.
    bool Cancelled() const { return !started_; }
    HDC Begin() override;
    void End() override;
    void Finish() override;

  private:
    UniqueMemoryDc dc_;
    Text fileName_;
    bool started_ = false;
};

// Returns the device context of a printer. Throws 482.
UniqueMemoryDc PrinterNamed(const Text& name);

// Enhanced metafiles of A4 paper, one after the other.
class MetafilePages : public PageTarget {
  public:
    MetafilePages();
    ~MetafilePages() override;
    HDC Begin() override;
    void End() override;
    void Finish() override {}
    // The last page that has been drawn; valid until the next one begins.
    HENHMETAFILE Page() const { return page_.Get(); }

  private:
    struct Delete {
        void operator()(HENHMETAFILE file) const { DeleteEnhMetaFile(file); }
    };
    HDC dc_ = nullptr;
    UniqueHandle<HENHMETAFILE, Delete> page_;
};

// Writes them as name-1.emf and so on; the files replace older ones together at the end.
class PageFiles final : public MetafilePages {
  public:
    // Throws error 5 for a name that does not end in .emf.
    explicit PageFiles(TextView fileName);
    ~PageFiles() override;
    HDC Begin() override;
    void End() override;
    void Finish() override;

  private:
    Text NameOf(int page) const;
    Text Unfinished(int page) const { return NameOf(page) + u".~page"; }

    Text stem_;
    Text suffix_;
    int pages_ = 0;     // written
    int finished_ = 0;  // and in their places
};

}  // namespace qvx::grid
