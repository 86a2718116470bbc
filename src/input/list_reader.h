// Reading the tools' text input files.
//
// A file is read top to bottom. Before each header value and each section, `SkipRemarks`
// passes over blank lines and remark lines (a '!' in the first column). Data are then read
// item by item, list-directed: blanks, tabs, commas and line ends separate items, one read may
// run over several lines, and what remains of the line after the last item of a read is
// dropped. So "7 ! F2" reads as 7, and a row of a thousand genotypes may wrap over many lines.
// Windows line ends are accepted.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace gae {

class InputFile {
 public:
  // False when the file does not exist, is not a regular file or cannot be read.
  bool Open(const std::string& path);
  void Close();
  bool IsOpen() const { return open_; }

  // Passes over blank lines and remark lines. A line is a remark only when its first
  // character is '!': a '!' after a blank makes the line data. At the end of the file the
  // position stays there, and the next read fails.
  void SkipRemarks();

  // The next item of the current read, crossing line ends; false at the end of the file.
  bool NextItem(std::string_view& item);
  // Ends the current read: the rest of the line of its last item is dropped.
  void EndRead();

  // 1-based number of the line the reader stands on (for diagnostics of our own).
  int LineNumber() const;
  // Items that remain on the current line before its end or a '!' item, which EndRead would
  // drop (for checks of our own that a row holds no more than the reader takes).
  int ItemsLeftOnLine() const;

 private:
  std::string text_;
  std::size_t pos_ = 0;
  bool open_ = false;
};

// One list-directed read: items in turn, then the rest of the line is dropped. Each item
// function returns false when the item is missing or malformed; the read has failed then.
class ListRead {
 public:
  explicit ListRead(InputFile& file) : file_(file) {}
  ListRead(const ListRead&) = delete;
  ListRead& operator=(const ListRead&) = delete;
  ~ListRead() { file_.EndRead(); }

  bool Int(int32_t& value);
  bool Real(float& value);
  // A character item: cut to `width` characters or blank-padded to it.
  bool Text(std::string& value, std::size_t width);
  // The raw item, as it stands in the file.
  bool Item(std::string_view& item) { return file_.NextItem(item); }

 private:
  InputFile& file_;
};

// The number rules of a list-directed read, for an item already in hand (phenotype cells are
// read as text first and converted afterwards).
bool ParseInt(std::string_view item, int32_t& value);
bool ParseReal(std::string_view item, float& value);

}  // namespace gae
