// What the fuzzers feed. Each target takes any bytes, checks the code against a plain model and
// ends the program with a message when an answer differs. The fuzz preset makes a libFuzzer program
// of each; everywhere else a test replays the seeds and all inputs that ever found something.
#pragma once

#include <cstddef>
#include <cstdint>

namespace demovex::fuzz {

// Parses and composes: the first byte chooses the delimiters, the rest is the text.
void ParameterText(const std::uint8_t* data, std::size_t size);
// Stores, reads and searches single fields.
void ParameterCells(const std::uint8_t* data, std::size_t size);
// Looks numbers up in an article master made of these bytes.
void ArticleMaster(const std::uint8_t* data, std::size_t size);
// Loads these bytes as a basket, goes through its cells, copies, saves and loads it again.
void Basket(const std::uint8_t* data, std::size_t size);

}  // namespace demovex::fuzz
