#include "TSLCLI/delimited_table.h"

#include <csv.h>

#include <algorithm>
#include <cctype>
#include <exception>
#include <new>
#include <utility>

#include "TSLCLI/input_file.h"
#include "TSLCLI/utf8.h"
#include "TSLCLI/wording.h"
#include "mxlibDim/file_path.h"

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20U;
constexpr const char* kDecimalCommas =
    " (numbers with a decimal comma need ; or tabs between the cells)";
// Where a file reads alike by several, the first is taken: a comma may be a decimal comma.
constexpr char kSeparators[] = {'\t', ';', ','};

/// The parser of the library, and what it calls: errors of the callbacks go around its C code.
class CsvParser {
  public:
    CsvParser(char separator, unsigned char options) {
        if (csv_init(&parser_, options) != 0) throw std::bad_alloc();
        csv_set_delim(&parser_, static_cast<unsigned char>(separator));
    }
    virtual ~CsvParser() { csv_free(&parser_); }
    CsvParser(const CsvParser&) = delete;
    CsvParser& operator=(const CsvParser&) = delete;

    /// False at a misplaced quote.
    bool Parse(std::string_view text) {
        const std::size_t taken =
            csv_parse(&parser_, text.data(), text.size(), OnCell, OnRow, this);
        Rethrow();
        return taken == text.size();
    }
    /// False where a quoted cell is not closed.
    bool End() {
        const int status = csv_fini(&parser_, OnCell, OnRow, this);
        Rethrow();
        return status == 0;
    }

  protected:
    virtual void Cell(std::string_view text) = 0;
    virtual void EndRow() = 0;

  private:
    template <class Body>
    void Guarded(const Body& body) {
        if (error_ != nullptr) return;
        try {
            body();
        } catch (...) {
            error_ = std::current_exception();
        }
    }
    static void OnCell(void* text, std::size_t size, void* self) {
        auto* const parser = static_cast<CsvParser*>(self);
        parser->Guarded([&] { parser->Cell({static_cast<const char*>(text), size}); });
    }
    static void OnRow(int /*end*/, void* self) {
        auto* const parser = static_cast<CsvParser*>(self);
        parser->Guarded([&] { parser->EndRow(); });
    }
    void Rethrow() {
        if (error_ != nullptr) std::rethrow_exception(std::exchange(error_, nullptr));
    }

    csv_parser parser_ = {};
    std::exception_ptr error_;
};

/// Counts the cells of the first rows of a file under a separator.
class RowCounter : CsvParser {
  public:
    RowCounter(char separator, std::string_view head, bool isWhole) : CsvParser(separator, 0) {
        Parse(head);
        if (isWhole) End();
    }
    std::size_t Header() const { return rows_.empty() ? 0 : rows_[0]; }
    /// Cells of the rows below the header, when all have the same number and the header fits.
    std::size_t Width() const {
        if (rows_.size() < 2) return 0;
        const bool isEven =
            std::all_of(rows_.begin() + 1, rows_.end(), [&](auto n) { return n == rows_[1]; });
        const bool fits = Header() == rows_[1] || Header() + 1 == rows_[1];
        return isEven && fits ? rows_[1] : 0;
    }

  private:
    static constexpr std::size_t kRowsLookedAt = 50;
    void Cell(std::string_view /*text*/) override { cells_++; }
    void EndRow() override {
        if (rows_.size() < kRowsLookedAt) rows_.push_back(cells_);
        cells_ = 0;
    }
    std::size_t cells_ = 0;
    std::vector<std::size_t> rows_;
};

/// The separator of even rows; of several, the one that the header fits cell by cell, then the one
/// of more cells. Without even rows the one of the longest header.
char FindSeparator(std::string_view head, bool isWhole) {
    struct Merit {
        bool isExact;
        std::size_t width, header;
        auto operator<=>(const Merit&) const = default;
    };
    char best = ',';
    Merit bestMerit = {false, 0, 0};
    for (const char separator : kSeparators) {
        const RowCounter counter(separator, head, isWhole);
        const std::size_t width = counter.Width() >= 2 ? counter.Width() : 0;
        const Merit merit = {width > 0 && counter.Header() == width, width, counter.Header()};
        if (merit > bestMerit) {
            best = separator;
            bestMerit = merit;
        }
    }
    return best;
}

/// Words that stand over the names of rows. Where one stands over the first column of values, a
/// decimal comma has parted the cells.
bool IsHeadingOfNames(std::string name) {
    static constexpr std::string_view kHeadings[] = {
        "",       "otu",     "otus",  "species", "sp",   "spp",       "taxon",       "taxa",
        "name",   "names",   "id",    "site",    "plot", "community", "communities", "sites",
        "sample", "samples", "plots", "row",     "rows", "rowname",   "rownames"};
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return std::find(std::begin(kHeadings), std::end(kHeadings), name) != std::end(kHeadings);
}

bool IsEmpty(std::string_view text) {
    return text.empty();
}

/// The parser has done so with cells that are not in quotes.
std::string_view Trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

class TableReader : CsvParser {
  public:
    explicit TableReader(DelimitedTable* table)
        : CsvParser(table->separator, CSV_STRICT | CSV_STRICT_FINI), table_(*table) {}

    /// Goes line by line, so that the parser's calls know where they are.
    void Read(std::string_view text) {
        while (!text.empty()) {
            const std::size_t end = std::min(text.find_first_of("\r\n"), text.size() - 1);
            const std::string_view line = text.substr(0, end + 1);
            ReadLine(line);
            text.remove_prefix(line.size());
        }
    }

    void Finish() {
        if (!End()) Fail("a quoted cell that begins here is not closed");
        if (header_.empty()) FailRun(table_.file + ": the file is empty");
        if (table_.rowNames.empty()) FailRun(table_.file + ": nothing stands below the header");
    }

  private:
    [[noreturn]] void Fail(const std::string& problem) const {
        FailRun(table_.file + ", line " + std::to_string(rowLine_) + ": " + problem);
    }

    void ReadLine(std::string_view line) {
        const char last = line.back();
        // A line end of two characters may be parted.
        if (!(line == "\n" && behindReturn_)) {
            line_ += behindEnd_ ? 1 : 0;
            behindEnd_ = last == '\n' || last == '\r';
        }
        behindReturn_ = last == '\r';
        if (beforeRow_) {
            rowLine_ = line_;
            beforeRow_ = line == "\n" || line == "\r";
        }
        if (!Parse(line))
            Fail("a quote within a cell: put the cell in quotes, its own quotes doubled");
    }

    void Cell(std::string_view text) override {
        const auto fail = [&](const char* problem) {
            Fail("cell " + std::to_string(cells_ + 1) + problem);
        };
        if (text.find('\0') != std::string_view::npos)
            fail(" holds a zero byte: save the table as CSV in UTF-8");
        if (ValidUtf8(text) < text.size())
            fail(" is not in UTF-8: save the table in that encoding");
        if (!hasHeader_)
            header_.emplace_back(Trimmed(text));
        else if (cells_ == 0)
            name_ = Trimmed(text);
        else
            table_.text.append(text).push_back('\0');
        cells_++;
    }

    void EndRow() override {
        beforeRow_ = true;
        const std::size_t cells = std::exchange(cells_, 0);
        if (!hasHeader_) {
            hasHeader_ = !std::all_of(header_.begin(), header_.end(), IsEmpty);
            if (!hasHeader_) header_.clear();
            headerLine_ = rowLine_;
            return;
        }
        const bool isEmpty =
            name_.empty() && table_.text.find_first_not_of('\0', start_) == std::string::npos;
        if (isEmpty) {
            table_.text.resize(start_);
            return;
        }
        if (width_ == 0) SettleColumns(cells);
        if (cells != width_)
            Fail(std::to_string(cells) + " cells where the other rows have " +
                 std::to_string(width_));
        KeepRow();
    }

    /// The header and the first row below it tell where the names stand.
    void SettleColumns(std::size_t cells) {
        if (cells != header_.size() && cells != header_.size() + 1)
            Fail(std::to_string(cells) + " cells where the header has " +
                 std::to_string(header_.size()) +
                 (table_.separator == ',' && cells > header_.size() ? kDecimalCommas : ""));
        width_ = cells;
        if (cells == header_.size())
            header_.erase(header_.begin());
        else if (IsHeadingOfNames(header_[0]))
            Fail("one cell more than the header, which begins with " + Quoted(header_[0]) +
                 ": give each column its name" + kDecimalCommas);
        const int row = std::exchange(rowLine_, headerLine_);
        while (!header_.empty() && header_.back().empty()) header_.pop_back();
        if (header_.empty())
            Fail("no columns found: put a comma, a semicolon or a tab between the cells");
        for (std::size_t j = 0; j < header_.size(); j++)
            RequireName(header_[j], "column " + std::to_string(j + 1));
        rowLine_ = row;
        table_.columnNames = header_;
    }

    void RequireName(const std::string& name, const std::string& what) const {
        const auto isControl = [](unsigned char c) { return c < ' ' || c == '\x7f'; };
        if (name.empty()) Fail(what + " has no name");
        if (std::any_of(name.begin(), name.end(), isControl))
            Fail("the name of " + what + " holds a line break or another control character");
    }

    void KeepRow() {
        RequireName(name_, "the row");
        std::size_t end = start_;
        for (std::size_t j = 0; j < table_.columnNames.size(); j++)
            end = table_.text.find('\0', end) + 1;
        if (table_.text.find_first_not_of('\0', end) != std::string::npos)
            Fail("a cell behind column " + Quoted(table_.columnNames.back()) +
                 " is filled, and its column has no name");
        table_.text.resize(end);
        table_.rowNames.push_back(name_);
        table_.lines.push_back(rowLine_);
        table_.starts.push_back(start_);
        start_ = end;
    }

    DelimitedTable& table_;
    std::vector<std::string> header_;
    bool hasHeader_ = false;
    std::size_t width_ = 0;  ///< cells of a row, its name included; 0 before the first
    std::size_t cells_ = 0;  ///< of the present row so far
    std::string name_;
    std::size_t start_ = 0;
    int line_ = 1, rowLine_ = 1, headerLine_ = 1;
    bool behindEnd_ = false, behindReturn_ = false, beforeRow_ = true;
};

std::string_view WithoutMark(std::string_view text, const std::string& file) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
        FailRun(file + ", line 1: the file is in UTF-16: save it as CSV in UTF-8");
    return text.starts_with("\xEF\xBB\xBF") ? text.substr(3) : text;
}

}  // namespace

DelimitedTable ReadDelimitedTable(const std::string& path) {
    InputFile file(path);
    std::string block = file.Read(kBlock);
    const std::string_view head = WithoutMark(block, path);
    DelimitedTable table;
    table.file = path;
    table.separator = FindSeparator(head, block.size() < kBlock);
    std::error_code ignored;
    const auto size = std::filesystem::file_size(PathOf(path), ignored);
    if (!ignored) table.text.reserve(static_cast<std::size_t>(size) + 1);
    TableReader reader(&table);
    reader.Read(head);
    for (block = file.Read(kBlock); !block.empty(); block = file.Read(kBlock)) reader.Read(block);
    reader.Finish();
    return table;
}

void CellsOf(const DelimitedTable& table, int row, std::vector<std::string_view>* cells) {
    cells->clear();
    const char* cell = table.text.data() + table.starts[row];
    for (std::size_t j = 0; j < table.columnNames.size(); j++) {
        cells->emplace_back(cell);
        cell += cells->back().size() + 1;
    }
}

std::string PlaceOf(const DelimitedTable& table, int row, int column) {
    return table.file + ", line " + std::to_string(table.lines[row]) + ", column " +
           Quoted(table.columnNames[column]) + " (row " + Quoted(table.rowNames[row]) + ")";
}
