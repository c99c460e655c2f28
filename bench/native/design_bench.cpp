// Measures the designer's steps in a form of many controls: moving or deleting all of them, and the way back.
#include <string>
#include <vector>

#include "bench/support/measure.h"
#include "designer/document/document.h"

namespace qvx::bench {
namespace {

using host::FormFile;
using host::TwipsRect;
using host::designer::Document;
using host::designer::ObjectId;

constexpr const char* peer = "Designer";

std::string FormOf(std::size_t controls) {
    std::string text = "Begin Form frmMany\r\n   Caption         =   \"Many\"\r\n";
    for (std::size_t i = 0; i < controls; ++i) {
        const std::string number = std::to_string(i);
        text += "   Begin Qvx.TextEdit txtField" + number + "\r\n";
        const std::pair<const char*, std::string> properties[] = {
            {"Height", "300"},
            {"Left", std::to_string(i % 10 * 1500)},
            {"TabIndex", number},
            {"Tag", "\"row " + number + "\""},
            {"ToolTipText", "\"Field " + number + " of the form\""},
            {"Top", std::to_string(i / 10 * 400)},
            {"Width", "1400"},
        };
        for (const auto& [name, value] : properties) {
            std::string line = name;
            line.resize(16, ' ');
            text += "      " + line + "=   " + value + "\r\n";
        }
        text += "   End\r\n";
    }
    return text + "End\r\n";
}

// Runs a step and adds its time, in seconds.
template <class Step>
void Time(std::vector<double>& samples, Step step) {
    const WorkStopwatch watch;
    step();
    samples.push_back(watch.Seconds());
}

void Run(std::size_t controls) {
    const std::string bytes = FormOf(controls);
    std::vector<double> move, undoMove, redoMove, remove, undoDelete;
    for (int run = 0; run < 9; ++run) {
        Document document(FormFile::Parse(bytes));
        const std::vector<ObjectId> all = document.Controls();
        Time(move, [&] {
            std::vector<TwipsRect> bounds;
            for (const host::Block* block : document.FindAll(all)) {
                bounds.push_back(Document::BoundsOf(*block));
                bounds.back().left += 120;
                bounds.back().top += 60;
            }
            document.Begin();
            document.SetBounds(all, bounds);
            document.Commit(u"Move");
        });
        const std::string moved = document.Bytes();
        CheckSameWork(moved != bytes, peer, "design_move");
        Time(undoMove, [&] { document.Undo(); });
        CheckSameWork(document.Bytes() == bytes, peer, "design_undo_move");
        Time(redoMove, [&] { document.Redo(); });
        CheckSameWork(document.Bytes() == moved, peer, "design_redo_move");
        Time(remove, [&] {
            document.Begin();
            document.Delete(all);
            document.Commit(u"Delete");
        });
        CheckSameWork(document.Controls().empty(), peer, "design_delete");
        Time(undoDelete, [&] { document.Undo(); });
        CheckSameWork(document.Bytes() == moved, peer, "design_undo_delete");
    }
    Report("design_move", controls, peer, move);
    Report("design_undo_move", controls, peer, undoMove);
    Report("design_redo_move", controls, peer, redoMove);
    Report("design_delete", controls, peer, remove);
    Report("design_undo_delete", controls, peer, undoDelete);
}

}  // namespace
}  // namespace qvx::bench

int main() {
    for (const std::size_t controls : {30, 300, 1200}) qvx::bench::Run(controls);
}
