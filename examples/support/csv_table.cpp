#include "csv_table.hpp"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

namespace examples {
namespace {

constexpr long long mostExact = 1LL << 53;
constexpr std::size_t pieceBytes = std::size_t{1} << 24;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string contentOf(const std::string& path) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  const auto require = [&path](bool condition, const std::string& why) {
    if (!condition) throw FileError("cannot read " + quoted(path) + ": " + why);
  };
  require(file != nullptr, std::strerror(errno));
  std::string content;
  for (std::size_t got = pieceBytes; got == pieceBytes;) {
    const std::size_t before = content.size();
    if (content.capacity() < before + pieceBytes) content.reserve(2 * before + pieceBytes);
    content.resize(before + pieceBytes);
    got = std::fread(content.data() + before, 1, pieceBytes, file.get());
    require(std::ferror(file.get()) == 0, std::strerror(errno));
    content.resize(before + got);
  }
  require(!content.empty(), "it is empty");
  return content;
}

// Walks over the cells of a file.
class Cells {
 public:
  Cells(const std::string& path, const std::string& content)
      : path_(path), begin_(content.data()), at_(begin_), end_(begin_ + content.size()) {
    // A mark that says UTF-8 is no part of the first cell.
    if (content.compare(0, 3, "\xEF\xBB\xBF") == 0) at_ += 3;
  }

  /// False at the end of the file.
  bool beginRow() {
    while (at_ != end_ && isLineEnd(at_)) passLineEnd();
    cell_ = 0;
    return at_ != end_;
  }

  /// The text of the next cell, without its quotes; `isLast` says that its row ends with it.
  std::string_view next(bool* isLast) {
    ++cell_;
    cellLine_ = line_;
    const char* from = at_;
    const char* to = nullptr;
    if (at_ != end_ && *at_ == '"') {
      ++from;
      for (++at_; at_ != end_ && (*at_ != '"' || (at_ + 1 != end_ && at_[1] == '"')); ++at_) {
        if (*at_ == '"') ++at_;
        if (*at_ == '\n') ++line_;
      }
      if (at_ == end_) fail("the quotes never end");
      to = at_++;
      if (at_ != end_ && *at_ != ',' && !isLineEnd(at_)) fail("expected a comma behind the quotes");
    } else {
      while (at_ != end_ && *at_ != ',' && *at_ != '\n') ++at_;
      to = at_;
      if (to != from && to[-1] == '\r' && (at_ == end_ || *at_ == '\n')) --to;
    }
    *isLast = at_ == end_ || *at_ != ',';
    if (!*isLast) {
      ++at_;
    } else if (at_ != end_) {
      passLineEnd();
    }
    return {from, static_cast<std::size_t>(to - from)};
  }

  double share() const { return static_cast<double>(at_ - begin_) / static_cast<double>(end_ - begin_); }

  /// Names the line, and the last cell.
  [[noreturn]] void fail(const std::string& why) const { failLine(why, ", column " + std::to_string(cell_)); }
  [[noreturn]] void failLine(const std::string& why, const std::string& where = "") const {
    throw FileError(quoted(path_) + ", line " + std::to_string(cellLine_) + where + ": " + why);
  }

 private:
  bool isLineEnd(const char* at) const { return *at == '\n' || (*at == '\r' && (at + 1 == end_ || at[1] == '\n')); }
  void passLineEnd() {
    if (*at_ == '\r') ++at_;
    if (at_ != end_) ++at_;
    ++line_;
  }

  std::string path_;
  const char* begin_;
  const char* at_;
  const char* end_;
  unsigned long line_ = 1;
  unsigned long cell_ = 0;      // Counted in its row.
  unsigned long cellLine_ = 1;  // On which it begins.
};

// -?digits, and with decimals a point and digits: all of the text, and not above 2^53.
bool isNumber(std::string_view text, unsigned int decimals, double* value) {
  const bool isNegative = !text.empty() && text[0] == '-';
  if (isNegative) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::size_t behind = point == text.size() ? 0 : text.size() - point - 1;
  if (point == 0 || behind > decimals || (point != text.size() && behind == 0)) return false;
  long long number = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i == point) continue;
    if (text[i] < '0' || text[i] > '9') return false;
    number = number * 10 + (text[i] - '0');
    if (number > mostExact) return false;
  }
  for (std::size_t i = behind; i < decimals; ++i) {
    number *= 10;
    if (number > mostExact) return false;
  }
  *value = static_cast<double>(isNegative ? -number : number);
  return true;
}

// What a message shows of a cell: its beginning, in ASCII.
std::string shown(std::string_view text) {
  constexpr std::size_t most = 40;
  std::string words(text.substr(0, most));
  std::replace_if(
      words.begin(), words.end(), [](char letter) { return letter < ' ' || letter > '~'; }, '?');
  return words.empty() ? "nothing" : "'" + words + (text.size() > most ? "...'" : "'");
}

// For each cell of a row the number of the column that it belongs to, or -1.
std::vector<int> placesOf(Cells& cells, const std::vector<CsvColumn>& columns) {
  std::vector<int> places;
  std::string names;
  for (bool isLast = !cells.beginRow(); !isLast;) {
    const std::string_view name = cells.next(&isLast);
    const auto column = std::find_if(columns.begin(), columns.end(), [&](const auto& c) { return c.name == name; });
    const int place = column == columns.end() ? -1 : static_cast<int>(column - columns.begin());
    if (place >= 0 && std::count(places.begin(), places.end(), place) != 0) {
      cells.fail("a second column '" + std::string(name) + "'");
    }
    places.push_back(place);
    names += (names.empty() ? "" : ", ") + std::string(name);
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (std::count(places.begin(), places.end(), static_cast<int>(i)) == 0) {
      cells.failLine("expected a column '" + columns[i].name + "', came " + shown(names));
    }
  }
  return places;
}

}  // namespace

std::vector<std::vector<double>> readCsv(const std::string& path, const std::vector<CsvColumn>& columns, Step& step) {
  const std::string content = contentOf(path);
  Cells cells(path, content);
  const std::vector<int> places = placesOf(cells, columns);
  std::vector<std::vector<double>> values(columns.size());
  for (unsigned long row = 0; cells.beginRow(); ++row) {
    if (row % 65536 == 0) step.reach(cells.share());
    bool isLast = false;
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (isLast) {
        cells.failLine("expected " + std::to_string(places.size()) + " cells, came " + std::to_string(i));
      }
      const std::string_view text = cells.next(&isLast);
      if (places[i] < 0) continue;
      const CsvColumn& column = columns[static_cast<std::size_t>(places[i])];
      double value = 0;
      if (!isNumber(text, column.decimals, &value)) {
        const std::string kind = column.decimals == 0
                                     ? "a whole number"
                                     : "a number of at most " + std::to_string(column.decimals) + " decimals";
        cells.fail("expected " + column.name + ", " + kind + " up to " +
                   inDecimals(static_cast<double>(mostExact), column.decimals) + ", came " + shown(text));
      }
      values[static_cast<std::size_t>(places[i])].push_back(value);
    }
    if (!isLast) cells.failLine("expected " + std::to_string(places.size()) + " cells, came more");
  }
  return values;
}

std::string inDecimals(double value, unsigned int decimals) {
  std::string text = std::to_string(static_cast<long long>(std::abs(value)));
  if (text.size() <= decimals) text.insert(0, decimals + 1 - text.size(), '0');
  if (decimals != 0) text.insert(text.size() - decimals, 1, '.');
  return value < 0 ? "-" + text : text;
}

CsvWriter& CsvWriter::text(const std::string& text) {
  beginCell();
  if (text.find_first_of(",\"\r\n") == std::string::npos) {
    bytes_ += text;
    return *this;
  }
  bytes_ += '"';
  for (const char letter : text) bytes_.append(letter == '"' ? 2 : 1, letter);
  bytes_ += '"';
  return *this;
}

CsvWriter& CsvWriter::number(double value, unsigned int decimals) {
  beginCell();
  bytes_ += inDecimals(value, decimals);
  return *this;
}

void CsvWriter::endRow() {
  bytes_ += '\n';
  isRowBegun_ = false;
  if (bytes_.size() >= (std::size_t{1} << 20)) finish();
}

void CsvWriter::finish() {
  file_->write(bytes_);
  bytes_.clear();
}

void CsvWriter::beginCell() {
  if (isRowBegun_) bytes_ += ',';
  isRowBegun_ = true;
}

}  // namespace examples
