#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

using Operation = std::function<void()>;

/// One comparison: what the library does, and the reference next to it. Each side first makes its data, which both
/// share where they are big, and then is the operation that is measured.
struct Row {
    std::string name;
    std::function<Operation()> ours;
    std::function<Operation()> reference;
    /// Whether to record the peak of the memory that one operation holds, beside the times: what it allocates, or what
    /// of that it touches.
    enum class Memory { None, Allocated, Resident };
    Memory memory = Memory::None;
    /// Whether to record by how much the process grows in one operation, whoever allocates.
    bool grows = false;
};

std::vector<Row> modelRows();
std::vector<Row> callRows();
std::vector<Row> transportRows();
std::vector<Row> repositoryRows();

/// The reference of more than one row: the JSON library reads the text of the list of issues, or another one, which
/// is not copied.
Operation parsing();
Operation parsing(const std::string& text);

/// Registers what has no reference beside it: late bodies, and growth over many calls.
void registerLongRows();

/// Registers how long starting a call holds its thread.
void registerStartRow();

} // namespace bench
