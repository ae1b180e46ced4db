// Boards as plain text files; README.md tells the format.
#pragma once

#include "virtualboard/Board.h"

#include <functional>
#include <memory>
#include <string>

namespace vb {

// Files that the text names are looked for in `folder`. Throws std::runtime_error that names the
// line and what is wrong with it.
std::unique_ptr<Board> ReadBoard(const std::string& text, const std::string& folder);

// The same with the BSDL texts from elsewhere, asked for by file name.
using BsdlSource = std::function<std::string(const std::string& fileName)>;
std::unique_ptr<Board> ReadBoard(const std::string& text, const BsdlSource& bsdl);

std::unique_ptr<Board> LoadBoard(const std::string& path);

// One line more for a finished board: "fault ...", "time ...". Used for what the environment adds.
void AddBoardLine(Board& board, const std::string& line);

} // namespace vb
