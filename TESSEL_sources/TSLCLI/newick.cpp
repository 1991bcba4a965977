#include "TSLCLI/newick.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "TSLCLI/failure.h"
#include "TSLCLI/utf8.h"
#include "TSLCLI/wording.h"
#include "mxlibDim/real_text.h"

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kEndsOfWord = "()[],:;";

bool IsBlank(char c) {
    return kBlanks.find(c) != std::string_view::npos;
}

class NewickParser {
  public:
    NewickParser(std::string_view text, const std::string& file) : text_(text), file_(file) {}

    Tree Parse() {
        const std::size_t valid = ValidUtf8(text_);
        if (valid < text_.size())
            FailAt(valid, "this is not in UTF-8: save the tree in that encoding");
        if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3;
        if (text_.substr(at_).starts_with("#NEXUS"))
            FailAt(at_, "a NEXUS file: write the tree in the Newick form");
        Open(-1);
        while (!open_.empty()) Node();
        Expect(';', "the tree does not end here with ;");
        if (Next() != '\0') FailAt(at_, "a second tree, or other text, behind the tree: leave one");
        RequireDistinctTips();
        return std::move(tree_);
    }

  private:
    [[noreturn]] void FailAt(std::size_t at, const std::string& problem) const {
        const std::string_view before = text_.substr(0, at);
        const auto line = std::count(before.begin(), before.end(), '\n') + 1;
        const std::size_t start = before.rfind('\n') + 1;  // 0 on the first line
        FailRun(file_ + ", line " + std::to_string(line) + ", column " +
                std::to_string(at - start + 1) + ": " + problem);
    }

    /// The character behind blanks and comments; zero at the end.
    char Next() {
        while (at_ < text_.size() && (IsBlank(text_[at_]) || text_[at_] == '[')) {
            if (text_[at_] == '[')
                SkipComment();
            else
                at_++;
        }
        return at_ < text_.size() ? text_[at_] : '\0';
    }

    void SkipComment() {
        const std::size_t start = at_;
        int depth = 0;
        do {
            if (at_ == text_.size()) FailAt(start, "a comment that begins here is not closed");
            depth += text_[at_] == '[' ? 1 : text_[at_] == ']' ? -1 : 0;
            at_++;
        } while (depth > 0);
    }

    void Expect(char wanted, const char* problem) {
        if (Next() != wanted) FailAt(at_, problem);
        at_++;
    }

    /// A new node, the present one until it is closed.
    void Open(int parent) {
        open_.push_back(static_cast<int>(tree_.parent.size()));
        tree_.parent.push_back(parent);
        tree_.length.push_back(0);
        tree_.tip.push_back(-1);
        isTip_ = true;
    }

    /// Goes on at the present node: down to its first child, or to the end of it and on to the
    /// next.
    void Node() {
        const int node = open_.back();
        if (isTip_ && Next() == '(') {
            at_++;
            Open(node);
            return;
        }
        Close(node);
        open_.pop_back();
        isTip_ = false;
        if (open_.empty()) return;
        const char next = Next();
        if (next == ',') {
            at_++;
            Open(open_.back());
        } else if (next == ')') {
            at_++;
        } else {
            FailAt(at_, "a comma or a closing parenthesis belongs here");
        }
    }

    /// What stands behind a tip or a closing parenthesis: name and length.
    void Close(int node) {
        Next();
        const std::size_t start = at_;
        bool quoted = false;
        const std::string name = Label(&quoted);
        if (isTip_) {
            if (name.empty()) FailAt(start, "a tip without name: give each the name of its OTU");
            tree_.tip[node] = static_cast<int>(tree_.tipNames.size());
            tree_.tipNames.push_back(name);
            tree_.isQuoted.push_back(quoted);
            tipPlaces_.push_back(start);
        }
        if (Next() == ':') {
            at_++;
            tree_.length[node] = Length();
        } else if (node != 0) {
            FailAt(at_, isTip_ ? "the branch of " + Quoted(name) + " has no length"
                               : "a branch without length");
        }
    }

    std::string Label(bool* quoted) {
        const char first = Next();
        *quoted = first == '\'' || first == '"';
        return *quoted ? QuotedLabel(first) : Word();
    }

    std::string QuotedLabel(char quote) {
        const std::size_t start = at_++;
        std::string label;
        for (;;) {
            if (at_ >= text_.size()) FailAt(start, "a quote that begins here is not closed");
            const char c = text_[at_++];
            if (c == quote && (at_ == text_.size() || text_[at_] != quote)) return label;
            if (c == quote) at_++;
            if (static_cast<unsigned char>(c) < ' ')
                FailAt(start, "a quote that begins here is not closed, or holds a line break");
            label.push_back(c);
        }
    }

    /// Up to what has a meaning of its own; blanks within it are taken for blanks of a name.
    std::string Word() {
        const std::size_t start = at_;
        at_ = std::min(text_.find_first_of(kEndsOfWord, start), text_.size());
        std::string word(text_.substr(start, at_ - start));
        word.erase(word.find_last_not_of(kBlanks) + 1);
        for (char& c : word)
            if (IsBlank(c)) c = ' ';
        const auto isControl = [](unsigned char c) { return c < ' '; };
        if (std::any_of(word.begin(), word.end(), isControl))
            FailAt(start, "a control character in a name");
        return word;
    }

    double Length() {
        Next();
        const std::size_t start = at_;
        std::string_view word = text_.substr(start);
        word = word.substr(0, word.find_first_of("()[],:; \t\r\n"));
        at_ += word.size();
        if (word.starts_with('+')) word.remove_prefix(1);
        double length = 0;
        const char* const end = word.data() + word.size();
        const auto [read, error] = ReadReal(word.data(), end, length);
        if (word.empty() || read != end || error == std::errc::invalid_argument)
            FailAt(start, "a length belongs here");
        if (error != std::errc() || !std::isfinite(length))
            FailAt(start, "the length " + std::string(word) + " is no finite number");
        if (length < 0) FailAt(start, "the length " + std::string(word) + " is negative");
        return length;
    }

    void RequireDistinctTips() const {
        std::unordered_map<std::string_view, std::size_t> seen;
        for (std::size_t i = 0; i < tree_.tipNames.size(); i++)
            if (!seen.emplace(tree_.tipNames[i], i).second)
                FailAt(tipPlaces_[i], "a second tip of the name " + Quoted(tree_.tipNames[i]));
    }

    std::string_view text_;
    const std::string& file_;
    std::size_t at_ = 0;
    Tree tree_;
    std::vector<int> open_;  ///< the present node and those around it
    bool isTip_ = true;      ///< the present node has no child so far
    std::vector<std::size_t> tipPlaces_;
};

}  // namespace

Tree ParseNewick(std::string_view text, const std::string& file) {
    return NewickParser(text, file).Parse();
}

void PathLengths(const Tree& tree, const std::vector<int>& places, double* const* distances) {
    // The tips below each node, as they have been joined so far, and the length from each tip to
    // the node. A chain of nodes with one child each is added up first, not once for each tip.
    const int nodes = static_cast<int>(tree.parent.size());
    std::vector<int> children(nodes, 0);
    for (int node = 1; node < nodes; node++) children[tree.parent[node]]++;
    std::vector<std::vector<int>> below(nodes);
    std::vector<double> upward(places.size(), 0.0);
    std::vector<double> length = tree.length;
    for (int node = nodes - 1; node >= 0; node--) {
        std::vector<int>& tips = below[node];
        const int place = tree.tip[node] >= 0 ? places[tree.tip[node]] : -1;
        if (place >= 0) {
            tips.push_back(place);
            distances[place][place] = 0.0;
        }
        if (node == 0) break;
        const int parent = tree.parent[node];
        if (children[parent] == 1) {
            // The tips pass, with the branch still to go.
            below[parent] = std::move(tips);
            length[parent] += length[node];
            continue;
        }
        for (const int tip : tips) upward[tip] += length[node];
        std::vector<int>& joined = below[parent];
        for (const int a : joined)
            for (const int b : tips) distances[a][b] = distances[b][a] = upward[a] + upward[b];
        joined.insert(joined.end(), tips.begin(), tips.end());
        tips = {};
    }
}
