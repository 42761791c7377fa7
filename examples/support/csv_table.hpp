/// @file
/// CSV files: columns of numbers from them, and rows into them.
#pragma once

#include <string>
#include <vector>

#include "output_file.hpp"
#include "step.hpp"

namespace examples {

/// A column to read: its name in the file's first line, and how many decimals its numbers have at most. They are read
/// in units of the last decimal: "12.5" with two decimals is 1250.
struct CsvColumn {
  std::string name;
  unsigned int decimals = 0;
};

/// Reads columns of numbers, all of them exactly. Other columns are passed over; cells may be in double quotes, a quote
/// inside doubled. Lines end with LF or CRLF; empty ones are passed over. The step is told how far it is.
/// @throws FileError with file, line and column for a cell that is no such number or is above 2^53, and for a line with
/// too many cells or too few; also if the file can't be read, is empty, or lacks a column.
std::vector<std::vector<double>> readCsv(const std::string& path, const std::vector<CsvColumn>& columns, Step& step);

/// Writes rows of a CSV file cell by cell. The caller publishes the file.
class CsvWriter {
 public:
  explicit CsvWriter(OutputFile& file) : file_(&file) {}

  /// Text, in quotes where it needs them.
  CsvWriter& text(const std::string& text);
  /// A whole number in units of the last decimal, as readCsv gives it.
  CsvWriter& number(double value, unsigned int decimals = 0);
  /// @throws FileError
  void endRow();
  /// Hands what is left to the file.
  /// @throws FileError
  void finish();

 private:
  void beginCell();

  OutputFile* file_;
  std::string bytes_;
  bool isRowBegun_ = false;
};

/// A number in units of the last decimal as CSV has it: -1250 with two decimals is "-12.50".
std::string inDecimals(double value, unsigned int decimals);

}  // namespace examples
