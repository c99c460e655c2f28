// Qt's table widget and its standard item model, and a model written by hand over plain vectors.
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QSet>
#include <QStandardItemModel>
#include <QTableView>
#include <QTableWidget>
#include <QVector>
#include <string>
#include <vector>

#include "bench/support/data_works.h"
#include "bench/support/paint_works.h"
#include "bench/support/record_works.h"
#include "bench/support/sum_works.h"

namespace qvx::bench {
namespace {

const std::vector<QString>& Texts() {
    static const std::vector<QString> texts = [] {
        std::vector<QString> rows;
        for (std::size_t i = 0; i < distinctRows; ++i) rows.push_back(QString::fromLatin1(RowText(i).c_str()));
        return rows;
    }();
    return texts;
}

// Calls take(column, text) for each cell of a row.
template <class Take>
void Split(const QString& text, Take take) {
    int start = 0;
    for (int col = 0; col < columnCount; ++col) {
        int tab = text.indexOf(QLatin1Char('\t'), start);
        if (tab < 0) tab = text.size();
        take(col, text.mid(start, tab - start));
        start = tab + 1;
    }
}

bool IsBlank(const QString& text) {
    for (const QChar c : text)
        if (c != QLatin1Char(' ')) return false;
    return true;
}

// Reads through the interface that all Qt models share.
double SumOf(const QAbstractItemModel& model) {
    double sum = 0;
    const int rows = model.rowCount();
    for (int row = 0; row < rows; ++row) sum += model.index(row, sumColumn).data().toString().toDouble();
    return sum;
}

std::size_t CountBlankOf(const QAbstractItemModel& model) {
    std::size_t blank = 0;
    const int rows = model.rowCount();
    for (int row = 0; row < rows; ++row)
        for (int col = 0; col < columnCount; ++col) blank += IsBlank(model.index(row, col).data().toString()) ? 1 : 0;
    return blank;
}

void RemoveEverySecondOf(QAbstractItemModel& model) {
    for (int row = (model.rowCount() - 1) | 1; row > 0; row -= 2)
        if (row < model.rowCount()) model.removeRow(row);
}

bool HasDuplicateIn(const QAbstractItemModel& model) {
    const int rows = model.rowCount();
    QSet<QString> keys;
    keys.reserve(rows);
    for (int row = 0; row < rows; ++row) {
        QString key;
        for (int col = 0; col < columnCount; ++col) key += model.index(row, col).data().toString();
        keys.insert(key.toCaseFolded());
    }
    return keys.size() != rows;
}

void RemoveEmptyRowsOf(QAbstractItemModel& model) {
    for (int row = model.rowCount() - 1; row >= 0; --row) {
        bool empty = true;
        for (int col = 0; empty && col < columnCount; ++col) empty = IsBlank(model.index(row, col).data().toString());
        if (empty) model.removeRow(row);
    }
}

double ProductIn(QAbstractItemModel& model, bool write) {
    double total = 0;
    const int rows = model.rowCount();
    for (int row = 0; row < rows; ++row) {
        const double product = model.index(row, sumColumn).data().toString().toDouble() *
                               model.index(row, factorColumn).data().toString().toDouble();
        if (write) model.setData(model.index(row, productColumn), QString::number(product, 'g', 15));
        total += product;
    }
    return total;
}

std::size_t FirstInvalidRowOf(const QAbstractItemModel& model) {
    const int rows = model.rowCount();
    for (int row = 1; row < rows; ++row) {
        for (int col = 0; col < columnCount; ++col) {
            const QString cell = model.index(row, col).data().toString();
            if (IsBlank(cell)) return static_cast<std::size_t>(row);
            if ((col == sumColumn || col == factorColumn) && !(cell.toDouble() > 0))
                return static_cast<std::size_t>(row);
        }
    }
    return static_cast<std::size_t>(rows);
}

void SetCellOf(QAbstractItemModel& model, std::size_t row, int col, const std::string& text) {
    model.setData(model.index(static_cast<int>(row), col), QString::fromStdString(text));
}

class WidgetPeer {
  public:
    static const char* Name() { return "Qt table widget"; }

    WidgetPeer() { table_.setColumnCount(columnCount); }
    void Load(std::size_t rows) {
        table_.setRowCount(static_cast<int>(rows));
        for (std::size_t i = 0; i < rows; ++i) SetRow(static_cast<int>(i), i);
    }
    double Sum() {
        double sum = 0;
        const int rows = table_.rowCount();
        for (int row = 0; row < rows; ++row) sum += table_.item(row, sumColumn)->text().toDouble();
        return sum;
    }
    std::size_t CountBlank() {
        std::size_t blank = 0;
        const int rows = table_.rowCount();
        for (int row = 0; row < rows; ++row)
            for (int col = 0; col < columnCount; ++col) blank += IsBlank(table_.item(row, col)->text()) ? 1 : 0;
        return blank;
    }
    void InsertAtTop(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            table_.insertRow(static_cast<int>(i));
            SetRow(static_cast<int>(i), i);
        }
    }
    void InsertBlockAtTop(std::size_t count) {
        table_.model()->insertRows(0, static_cast<int>(count));
        for (std::size_t i = 0; i < count; ++i) SetRow(static_cast<int>(i), i);
    }
    void RemoveEverySecond() { RemoveEverySecondOf(*table_.model()); }
    void SetCell(std::size_t row, int col, const std::string& text) { SetCellOf(*table_.model(), row, col, text); }
    bool HasDuplicate() { return HasDuplicateIn(*table_.model()); }
    void RemoveEmptyRows() { RemoveEmptyRowsOf(*table_.model()); }
    double Product(bool write) { return ProductIn(*table_.model(), write); }
    std::size_t FirstInvalidRow() { return FirstInvalidRowOf(*table_.model()); }
    std::size_t Rows() { return static_cast<std::size_t>(table_.rowCount()); }
    std::string Cell(std::size_t row, std::size_t col) {
        return table_.item(static_cast<int>(row), static_cast<int>(col))->text().toStdString();
    }

  private:
    void SetRow(int row, std::size_t text) {
        Split(Texts()[text % distinctRows],
              [&](int col, const QString& cell) { table_.setItem(row, col, new QTableWidgetItem(cell)); });
    }

    QTableWidget table_;
};

class ItemModelPeer {
  public:
    static const char* Name() { return "Qt standard item model"; }

    ItemModelPeer() { model_.setColumnCount(columnCount); }
    void Load(std::size_t rows) {
        for (std::size_t i = 0; i < rows; ++i) model_.appendRow(Row(i));
    }
    double Sum() { return SumOf(model_); }
    std::size_t CountBlank() { return CountBlankOf(model_); }
    void InsertAtTop(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) model_.insertRow(static_cast<int>(i), Row(i));
    }
    void InsertBlockAtTop(std::size_t count) {
        model_.insertRows(0, static_cast<int>(count));
        for (std::size_t i = 0; i < count; ++i)
            Split(Texts()[i % distinctRows], [&](int col, const QString& cell) {
                model_.setItem(static_cast<int>(i), col, new QStandardItem(cell));
            });
    }
    void RemoveEverySecond() { RemoveEverySecondOf(model_); }
    void SetCell(std::size_t row, int col, const std::string& text) { SetCellOf(model_, row, col, text); }
    bool HasDuplicate() { return HasDuplicateIn(model_); }
    void RemoveEmptyRows() { RemoveEmptyRowsOf(model_); }
    double Product(bool write) { return ProductIn(model_, write); }
    std::size_t FirstInvalidRow() { return FirstInvalidRowOf(model_); }
    std::size_t Rows() { return static_cast<std::size_t>(model_.rowCount()); }
    std::string Cell(std::size_t row, std::size_t col) {
        return model_.item(static_cast<int>(row), static_cast<int>(col))->text().toStdString();
    }

  private:
    static QList<QStandardItem*> Row(std::size_t text) {
        QList<QStandardItem*> items;
        items.reserve(columnCount);
        Split(Texts()[text % distinctRows], [&](int, const QString& cell) { items.append(new QStandardItem(cell)); });
        return items;
    }

    QStandardItemModel model_;
};

// The storage is the program's own here, so this is a baseline for what Qt's interface adds to the bare arrays.
class VectorModel : public QAbstractTableModel {
  public:
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_.size(); }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : bench::columnCount; }
    QVariant data(const QModelIndex& index, int role) const override {
        return role == Qt::DisplayRole ? QVariant(rows_[index.row()][index.column()]) : QVariant();
    }
    bool removeRows(int row, int count, const QModelIndex& parent) override {
        beginRemoveRows(parent, row, row + count - 1);
        rows_.remove(row, count);
        endRemoveRows();
        return true;
    }
    void AddRow(int at, std::size_t text) {
        QVector<QString> cells(bench::columnCount);
        Split(Texts()[text % distinctRows], [&](int col, const QString& cell) { cells[col] = cell; });
        beginInsertRows({}, at, at);
        rows_.insert(at, std::move(cells));
        endInsertRows();
    }
    void AddRows(int at, std::size_t count) {
        beginInsertRows({}, at, at + static_cast<int>(count) - 1);
        rows_.insert(at, static_cast<int>(count), QVector<QString>(bench::columnCount));
        for (std::size_t i = 0; i < count; ++i)
            Split(Texts()[i % distinctRows],
                  [&](int col, const QString& cell) { rows_[at + static_cast<int>(i)][col] = cell; });
        endInsertRows();
    }

  private:
    QVector<QVector<QString>> rows_;
};

class VectorModelPeer {
  public:
    static const char* Name() { return "Qt model over arrays"; }

    void Load(std::size_t rows) {
        for (std::size_t i = 0; i < rows; ++i) model_.AddRow(static_cast<int>(i), i);
    }
    double Sum() { return SumOf(model_); }
    std::size_t CountBlank() { return CountBlankOf(model_); }
    void InsertAtTop(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) model_.AddRow(static_cast<int>(i), i);
    }
    void InsertBlockAtTop(std::size_t count) { model_.AddRows(0, count); }
    void RemoveEverySecond() { RemoveEverySecondOf(model_); }
    std::size_t Rows() { return static_cast<std::size_t>(model_.rowCount()); }
    std::string Cell(std::size_t row, std::size_t col) {
        return model_.index(static_cast<int>(row), static_cast<int>(col)).data().toString().toStdString();
    }

  private:
    VectorModel model_;
};

void Prepare(QTableView& view) {
    view.setWindowFlags(Qt::FramelessWindowHint);
    view.resize(paintWidth, paintHeight);
    view.horizontalHeader()->setDefaultSectionSize(paintColumnWidth);
    view.horizontalHeader()->setFixedHeight(paintRowHeight);
    view.verticalHeader()->setMinimumSectionSize(1);
    view.verticalHeader()->setDefaultSectionSize(paintRowHeight);
    view.verticalHeader()->setFixedWidth(paintHeaderWidth);
    view.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    const QAbstractItemModel& model = *view.model();
    view.selectionModel()->select(QItemSelection(model.index(1, 2), model.index(model.rowCount() - 2, 3)),
                                  QItemSelectionModel::Select);
}

// Counts how often a view's cells are painted.
class PaintCounter : public QObject {
  public:
    explicit PaintCounter(QTableView& view) { view.viewport()->installEventFilter(this); }
    int Count() const { return count_; }

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++count_;
        return false;
    }

  private:
    int count_ = 0;
};

// Repaints the whole view, or the part that scrolling has invalidated, and sends it to the display.
void PaintNow(QTableView& view, const PaintCounter& counter, bool everything) {
    const int before = counter.Count();
    if (everything) {
        view.horizontalHeader()->viewport()->update();
        view.verticalHeader()->viewport()->update();
        view.viewport()->update();
    }
    do {
        QApplication::processEvents();
    } while (counter.Count() == before);
    CheckSameWork(!everything || counter.Count() == before + 1, "Qt", "frames");
}

class WidgetScreen {
  public:
    static const char* Name() { return "Qt table widget"; }
    explicit WidgetScreen(std::size_t rows) {
        table_.setColumnCount(columnCount);
        table_.setRowCount(static_cast<int>(rows));
        for (std::size_t i = 0; i < rows; ++i)
            Split(Texts()[i % distinctRows], [&](int col, const QString& cell) {
                table_.setItem(static_cast<int>(i), col, new QTableWidgetItem(cell));
            });
        Prepare(table_);
        table_.show();
        while (counter_.Count() == 0) QApplication::processEvents();
    }
    void DrawFrame(std::size_t topRow, bool everything) {
        table_.verticalScrollBar()->setValue(static_cast<int>(topRow));
        PaintNow(table_, counter_, everything);
    }

  private:
    QTableWidget table_;
    PaintCounter counter_{table_};
};

class VectorModelScreen {
  public:
    static const char* Name() { return "Qt view over arrays"; }
    explicit VectorModelScreen(std::size_t rows) {
        for (std::size_t i = 0; i < rows; ++i) model_.AddRow(static_cast<int>(i), i);
        view_.setModel(&model_);
        Prepare(view_);
        view_.show();
        while (counter_.Count() == 0) QApplication::processEvents();
    }
    void DrawFrame(std::size_t topRow, bool everything) {
        view_.verticalScrollBar()->setValue(static_cast<int>(topRow));
        PaintNow(view_, counter_, everything);
    }

  private:
    VectorModel model_;
    QTableView view_;
    PaintCounter counter_{view_};
};

}  // namespace
}  // namespace qvx::bench

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const qvx::bench::Options options(argc, argv);
    using namespace qvx::bench;
    RunPaintWorks<WidgetScreen>();
    RunPaintWorks<VectorModelScreen>();
    RunDataWorks<WidgetPeer>(options);
    RunDataWorks<ItemModelPeer>(options);
    RunDataWorks<VectorModelPeer>(options);
    RunSumWorks<WidgetPeer>(options);
    RunSumWorks<ItemModelPeer>(options);
    RunRecordWorks<WidgetPeer>(options);
    RunRecordWorks<ItemModelPeer>(options);
}
