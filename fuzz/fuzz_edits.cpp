// Model edits through the editor's own commands: a model from the corpus, then the rest of the
// input as a sequence of operations with arguments (valid and invalid alike). After each one
// a refused operation must have left the model's bytes as they were; after the sequence the
// model must write and read back to itself, undoing every step must give back the first
// bytes and redoing them the last.
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "edit_operations.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"

namespace {

using namespace mw;
using edits::MakeOperation;
using edits::Ops;

std::vector<std::uint8_t> Bytes(const ModelData& model) {
    ModelData copy = model;
    return WriteOOF(copy);
}

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "fuzz_edits: %s\n", what);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    std::uint32_t length = 0;
    std::memcpy(&length, data, 4);
    length = static_cast<std::uint32_t>(std::min<std::size_t>(length, size - 4));
    clsOOF oof;
    if (oof.readOOF({data + 4, length}) != ResultCode::Success) return 0;
    Document doc(oof);
    doc.undoStack().setUndoLimit(0);  // keep every step
    doc.ResetModel(true);
    const std::vector<std::uint8_t> first = Bytes(doc.model());

    Ops ops({data + 4 + length, size - 4 - length});
    KeyClipboard clip;
    for (int steps = 0; !ops.done() && steps < 64; ++steps) {
        const std::vector<std::uint8_t> before = Bytes(doc.model());
        QUndoCommand* command = MakeOperation(doc, ops, clip);
        if (command == nullptr) continue;
        if (!doc.Apply(command) && Bytes(doc.model()) != before)
            Fail("a refused edit changed the model");
        doc.EndEditSession();
    }
    const std::vector<std::uint8_t> last = Bytes(doc.model());

    // The model writes and reads back to itself. The writer turns the axis of a rotation key
    // with a zero angle round on every save, so it is two saves that give the same bytes.
    ModelData again;
    if (readOOF(again, last) != ResultCode::Success) Fail("the edited model does not read back");
    ModelData twice;
    if (readOOF(twice, Bytes(again)) != ResultCode::Success) Fail("a resave does not read back");
    if (Bytes(twice) != last) Fail("the edited model does not write back to the same bytes");

    QUndoStack& stack = doc.undoStack();
    while (stack.canUndo())
        stack.undo();
    if (Bytes(doc.model()) != first) Fail("undoing every step did not give the first bytes");
    while (stack.canRedo())
        stack.redo();
    if (Bytes(doc.model()) != last) Fail("redoing every step did not give the last bytes");
    return 0;
}
