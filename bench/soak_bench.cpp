// The soak: 10,000 random edits through the editor's commands on the 50,000-face model, with
// undo and redo between them, the undo stack at its default limit. Prints the time per
// operation and what the undo stack holds.
#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <random>

#include "bench_models.h"
#include "edit_operations.h"
#include "editor/document.h"
#include "gamedata/settings.h"

namespace mw {
namespace {

std::size_t StackBytes(const QUndoStack& stack) {
    std::size_t bytes = 0;
    for (int i = 0; i < stack.count(); ++i) {
        const QUndoCommand* c = stack.command(i);
        if (const auto* model = dynamic_cast<const ModelCommand*>(c)) {
            bytes += model->ByteSize();
        } else {
            bytes += sizeof(ValueCommand<Vector3>);  // a value edit: two values and its key
        }
    }
    return bytes;
}

void SoakEdits(benchmark::State& state) {
    const int operations = static_cast<int>(state.range(0));
    for (auto _ : state) {
        clsOOF oof;
        oof.data() = LargeModel(100, 500);  // 50,000 faces
        Document doc(oof);
        doc.undoStack().setUndoLimit(Settings{}.UndoLimit);
        doc.ResetModel(true);
        std::mt19937 rng(11);
        std::vector<std::uint8_t> stream(static_cast<std::size_t>(operations) * 12);
        for (auto& b : stream)
            b = static_cast<std::uint8_t>(rng());
        edits::Ops ops(stream);
        KeyClipboard clip;
        std::size_t largest = 0;
        int applied = 0, undone = 0;
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < operations; ++i) {
            if (QUndoCommand* command = edits::MakeOperation(doc, ops, clip)) {
                applied += doc.Apply(command) ? 1 : 0;
            }
            doc.EndEditSession();
            if (i % 4 == 3) {  // two steps back, one forward
                for (int k = 0; k < 2 && doc.undoStack().canUndo(); ++k, ++undone)
                    doc.undoStack().undo();
                if (doc.undoStack().canRedo()) doc.undoStack().redo();
            }
            if (i % 500 == 0) largest = std::max(largest, StackBytes(doc.undoStack()));
        }
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        largest = std::max(largest, StackBytes(doc.undoStack()));
        state.counters["ms_per_op"] = seconds * 1000.0 / operations;
        state.counters["applied"] = applied;
        state.counters["undone"] = undone;
        state.counters["stack_steps"] = doc.undoStack().count();
        state.counters["stack_MB_peak"] = static_cast<double>(largest) / (1024.0 * 1024.0);
        state.counters["model_MB"] =
            static_cast<double>(
                ModelSnapshot(doc.model(), GeometryScope::Everything()).ByteSize()) /
            (1024.0 * 1024.0);
    }
}

// What a recovery copy costs the window: copying the model (the bytes are made and written
// on another thread). The 50,000-face model is larger than any the game accepts.
void CopyModelForRecovery(benchmark::State& state) {
    const ModelData model = LargeModel(100, 500);
    for (auto _ : state) {
        auto copy = std::make_shared<ModelData>(model);
        benchmark::DoNotOptimize(copy.get());
    }
}

BENCHMARK(CopyModelForRecovery)->Unit(benchmark::kMillisecond);
BENCHMARK(SoakEdits)->Arg(10000)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace
}  // namespace mw
