// wxWidgets' grid: its string table for the data, the grid itself on a display for painting.
#include <wx/app.h>
#include <wx/frame.h>
#include <wx/grid.h>

#include <string>
#include <unordered_set>
#include <vector>

#include "bench/support/data_works.h"
#include "bench/support/paint_works.h"
#include "bench/support/record_works.h"
#include "bench/support/sum_works.h"

namespace qvx::bench {
namespace {

const std::vector<wxString>& Texts() {
    static const std::vector<wxString> texts = [] {
        std::vector<wxString> rows;
        for (std::size_t i = 0; i < distinctRows; ++i) rows.push_back(wxString::FromAscii(RowText(i).c_str()));
        return rows;
    }();
    return texts;
}

// Creates all rows in one call and then fills them, which is faster there than a call per row.
void Fill(wxGridStringTable& table, std::size_t first, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const wxString& text = Texts()[i % distinctRows];
        std::size_t start = 0;
        for (int col = 0; col < columnCount; ++col) {
            const std::size_t tab = std::min(text.find(wxT('\t'), start), text.size());
            table.SetValue(static_cast<int>(first + i), col, text.substr(start, tab - start));
            start = tab + 1;
        }
    }
}

class WxPeer {
  public:
    static const char* Name() { return "wxWidgets grid table"; }

    void Load(std::size_t rows) {
        table_.AppendRows(rows);
        Fill(table_, 0, rows);
    }
    double Sum() {
        double sum = 0;
        const int rows = table_.GetNumberRows();
        for (int row = 0; row < rows; ++row) {
            double value = 0;
            if (table_.GetValue(row, sumColumn).ToCDouble(&value)) sum += value;
        }
        return sum;
    }
    std::size_t CountBlank() {
        std::size_t blank = 0;
        const int rows = table_.GetNumberRows();
        for (int row = 0; row < rows; ++row)
            for (int col = 0; col < columnCount; ++col)
                blank += table_.GetValue(row, col).find_first_not_of(wxT(' ')) == wxString::npos ? 1 : 0;
        return blank;
    }
    void InsertAtTop(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            table_.InsertRows(i, 1);
            const wxString& text = Texts()[i % distinctRows];
            std::size_t start = 0;
            for (int col = 0; col < columnCount; ++col) {
                const std::size_t tab = std::min(text.find(wxT('\t'), start), text.size());
                table_.SetValue(static_cast<int>(i), col, text.substr(start, tab - start));
                start = tab + 1;
            }
        }
    }
    void InsertBlockAtTop(std::size_t count) {
        table_.InsertRows(0, count);
        Fill(table_, 0, count);
    }
    void RemoveEverySecond() {
        for (int row = (table_.GetNumberRows() - 1) | 1; row > 0; row -= 2)
            if (row < table_.GetNumberRows()) table_.DeleteRows(static_cast<std::size_t>(row), 1);
    }
    void SetCell(std::size_t row, int col, const std::string& text) {
        table_.SetValue(static_cast<int>(row), col, wxString::FromAscii(text.c_str()));
    }
    bool HasDuplicate() {
        const int rows = table_.GetNumberRows();
        std::unordered_set<wxString, wxStringHash> keys;
        keys.reserve(static_cast<std::size_t>(rows));
        for (int row = 0; row < rows; ++row) {
            wxString key;
            for (int col = 0; col < columnCount; ++col) key += table_.GetValue(row, col);
            if (!keys.insert(key.MakeLower()).second) return true;
        }
        return false;
    }
    void RemoveEmptyRows() {
        for (int row = table_.GetNumberRows() - 1; row >= 0; --row) {
            bool empty = true;
            for (int col = 0; empty && col < columnCount; ++col)
                empty = table_.GetValue(row, col).find_first_not_of(wxT(' ')) == wxString::npos;
            if (empty) table_.DeleteRows(static_cast<std::size_t>(row), 1);
        }
    }
    double Product(bool write) {
        double total = 0;
        const int rows = table_.GetNumberRows();
        for (int row = 0; row < rows; ++row) {
            double first = 0;
            double second = 0;
            table_.GetValue(row, sumColumn).ToCDouble(&first);
            table_.GetValue(row, factorColumn).ToCDouble(&second);
            if (write) table_.SetValue(row, productColumn, wxString::FromCDouble(first * second));
            total += first * second;
        }
        return total;
    }
    std::size_t FirstInvalidRow() {
        const int rows = table_.GetNumberRows();
        for (int row = 1; row < rows; ++row) {
            for (int col = 0; col < columnCount; ++col) {
                const wxString cell = table_.GetValue(row, col);
                if (cell.find_first_not_of(wxT(' ')) == wxString::npos) return static_cast<std::size_t>(row);
                double value = 0;
                if ((col == sumColumn || col == factorColumn) && !(cell.ToCDouble(&value) && value > 0))
                    return static_cast<std::size_t>(row);
            }
        }
        return Rows();
    }
    std::size_t Rows() { return static_cast<std::size_t>(table_.GetNumberRows()); }
    std::string Cell(std::size_t row, std::size_t col) {
        return table_.GetValue(static_cast<int>(row), static_cast<int>(col)).ToStdString();
    }

  private:
    wxGridStringTable table_{0, columnCount};
};

class WxScreen {
  public:
    static const char* Name() { return "wxWidgets grid"; }

    explicit WxScreen(std::size_t rows) {
        auto* table = new wxGridStringTable(0, columnCount);  // the grid owns it
        table->AppendRows(rows);
        Fill(*table, 0, rows);
        frame_ = new wxFrame(nullptr, wxID_ANY, "bench", wxPoint(0, 0), wxDefaultSize, wxBORDER_NONE);
        frame_->SetClientSize(paintWidth, paintHeight);
        grid_ = new wxGrid(frame_, wxID_ANY, wxPoint(0, 0), wxSize(paintWidth, paintHeight));
        grid_->SetTable(table, true);
        grid_->SetDefaultRowSize(paintRowHeight, true);
        grid_->SetDefaultColSize(paintColumnWidth, true);
        grid_->SetRowLabelSize(paintHeaderWidth);
        grid_->SetColLabelSize(paintRowHeight);
        grid_->SelectBlock(1, 2, static_cast<int>(rows) - 2, 3);
        grid_->GetGridWindow()->Bind(wxEVT_PAINT, [this](wxPaintEvent& event) {
            ++painted_;
            event.Skip();
        });
        frame_->Show();
        WaitForPaint(0);
    }
    ~WxScreen() {
        frame_->Destroy();
        wxTheApp->ProcessPendingEvents();
        wxTheApp->ProcessIdle();
    }
    WxScreen(const WxScreen&) = delete;
    WxScreen& operator=(const WxScreen&) = delete;

    void DrawFrame(std::size_t topRow, bool everything) {
        const int before = painted_;
        int unit = 1;
        grid_->GetScrollPixelsPerUnit(nullptr, &unit);
        grid_->Scroll(-1, static_cast<int>(topRow) * paintRowHeight / unit);
        if (everything) grid_->Refresh();
        grid_->Update();
        WaitForPaint(before);
    }

  private:
    void WaitForPaint(int before) {
        while (painted_ == before) {
            wxYield();
            grid_->Update();
        }
    }

    wxFrame* frame_ = nullptr;
    wxGrid* grid_ = nullptr;
    int painted_ = 0;
};

class WxBench : public wxApp {
  public:
    bool OnInit() override { return true; }
    int OnRun() override {
        const Options options(argc, argv);
        RunPaintWorks<WxScreen>();
        RunDataWorks<WxPeer>(options);
        RunSumWorks<WxPeer>(options);
        RunRecordWorks<WxPeer>(options);
        return 0;
    }
};

}  // namespace
}  // namespace qvx::bench

wxIMPLEMENT_APP_NO_MAIN(qvx::bench::WxBench);

int main(int argc, char** argv) { return wxEntry(argc, argv); }
