// Wrong inputs of import, one fault each, and the line that each must get.

#include <map>

#include "tessel/in_command.h"

namespace {

// t, c, e, p, y: traits, communities, environment, phylogeny, types.
const std::map<std::string, std::string> kGood = {
    {"t.csv", "OTU,height,leaf\nPoa annua,1.5,2\nCarex nigra,3,4\nStipa,5,7\n"},
    {"c.csv", "site,Poa annua,Carex nigra,Stipa\ns1,1,0,2\ns2,0,3,0\ns3,1,1,1\ns4,2,0,4\n"},
    {"e.csv", "site,wet,soil\ns1,1.5,clay\ns2,2,sand\ns3,0.5,peat\ns4,1,clay\n"},
    {"p.csv", "OTU,Poa annua,Carex nigra,Stipa\nPoa annua,0,3,4\nCarex nigra,3,0,4\nStipa,4,4,0\n"},
    {"p.nwk", "((Poa_annua:1,'Carex nigra':1):1,Stipa:2);\n"},
    {"y.csv", "OTU,type\nStipa,2\nPoa annua,1\nCarex nigra,1\n"}};

struct Fault {
    std::string file, good, bad;  ///< all of the file where `good` is empty
    std::string options;
    std::string line;
    int status = 1;
};

const std::string kE = "--environment e.csv", kP = "--phylogeny p.csv", kN = "--phylogeny p.nwk";
const std::string kUnmatched = ": correct the names, or leave them out with --drop-unmatched";
const std::string kWords = ": correct it, or tell the column with --nominal";
const std::string kZero = ": write 0 where the OTU does not occur, or leave the community out";

const std::vector<Fault> kFaults = {
    // The form of a table
    {"t.csv", "", "", "", "t.csv: the file is empty"},
    {"t.csv", "", "OTU,height\n", "", "t.csv: nothing stands below the header"},
    {"t.csv", "", "OTU\nStipa\n", "",
     "t.csv, line 1: no columns found: put a comma, a semicolon or a tab between the cells"},
    {"t.csv", "5,7", "5", "", "t.csv, line 4: 2 cells where the other rows have 3"},
    {"t.csv", "5,7", "5,7,8", "", "t.csv, line 4: 4 cells where the other rows have 3"},
    {"c.csv", "Stipa\n", "Stipa,Avena\n", "", "c.csv, line 2: 4 cells where the header has 5"},
    {"t.csv", "", "OTU,height\nPoa annua,1,5\nStipa,2,5\n", "",
     "t.csv, line 2: one cell more than the header, which begins with 'OTU': give each column its "
     "name (numbers with a decimal comma need ; or tabs between the cells)"},
    {"t.csv", "1.5,2", "1\"5,2", "",
     "t.csv, line 2: a quote within a cell: put the cell in quotes, its own quotes doubled"},
    {"t.csv", "1.5,2", "\"1.5,2", "",
     "t.csv, line 2: a quoted cell that begins here is not closed"},
    {"t.csv", "Stipa", "St\xEFpa", "",
     "t.csv, line 4: cell 1 is not in UTF-8: save the table in that encoding"},
    {"t.csv", "", "\xFF\xFEO", "", "t.csv, line 1: the file is in UTF-16: save it as CSV in UTF-8"},
    {"t.csv", "3,4", std::string("3\0,4", 4), "",
     "t.csv, line 3: cell 2 holds a zero byte: save the table as CSV in UTF-8"},
    {"t.csv", "leaf", "", "",
     "t.csv, line 2: a cell behind column 'height' is filled, and its column has no name"},
    {"t.csv", "height", "", "", "t.csv, line 1: column 1 has no name"},
    {"t.csv", "Stipa", "", "", "t.csv, line 4: the row has no name"},
    {"t.csv", "Stipa", "\"Sti\npa\"", "",
     "t.csv, line 4: the name of the row holds a line break or another control character"},
    {"", "", "", "--environment none.csv",
     "none.csv: the file cannot be opened: No such file or directory"},
    {"", "", "", "--environment .", ".: the file cannot be opened: Is a directory"},
    // Names
    {"t.csv", "leaf", "height", "",
     "t.csv: two columns are named 'height': give each a name of its own"},
    {"t.csv", "Stipa", "Poa annua", "",
     "t.csv: two rows are named 'Poa annua': give each a name of its own"},
    {"t.csv", "Stipa", "poa  annua", "",
     "t.csv: the names 'Poa annua' and 'poa  annua' of two rows differ only in case or blanks: "
     "make "
     "one of them, or rename one"},
    {"t.csv", "Stipa", "Stippa", "",
     "OTUs of t.csv that c.csv does not have: 'Stippa' (near 'Stipa'); OTUs of c.csv that t.csv "
     "does "
     "not have: 'Stipa' (near 'Stippa')" +
         kUnmatched},
    {"c.csv", "Poa annua", "Poa.Annua", "",
     "OTUs of t.csv that c.csv does not have: 'Poa annua' ('Poa.Annua' but for case, blanks or the "
     "signs for them); OTUs of c.csv that t.csv does not have: 'Poa.Annua' ('Poa annua' but for "
     "case, blanks or the signs for them)" +
         kUnmatched},
    {"t.csv", "", "OTU,a\nA,1\nB,2\n", "--drop-unmatched", "the tables have no OTUs in common"},
    {"e.csv", "s2", "s9", kE,
     "communities of c.csv that e.csv does not have: 's2' (near 's1'); communities of e.csv that "
     "c.csv does not have: 's9' (near 's1')" +
         kUnmatched},
    {"p.nwk", "Stipa", "Stippa", kN,
     "OTUs of t.csv that p.nwk does not have: 'Stipa' (near 'Stippa'); OTUs of p.nwk that t.csv "
     "does "
     "not have: 'Stippa' (near 'Stipa')" +
         kUnmatched},
    {"y.csv", "Stipa,2\n", "", "--types y.csv",
     "OTUs of t.csv that y.csv does not have: 'Stipa'" + kUnmatched},
    {"t.csv", "", "OTU,Poa annua,Carex nigra,Stipa\nheight,1,2,3\n", "",
     "t.csv: the table is turned the wrong way round: its columns are the OTUs of the communities; "
     "put OTUs in rows, traits in columns"},
    {"c.csv", "", "OTU,s1,s2\nPoa annua,1,2\nCarex nigra,0,2\nStipa,3,4\n", "",
     "c.csv: the table is turned the wrong way round: its rows are the OTUs of the traits; put "
     "communities in rows, OTUs in columns"},
    {"e.csv", "", "v,s1,s2,s3,s4\nwet,1,2,3,4\n", kE,
     "e.csv: the table is turned the wrong way round: its columns are the communities; put "
     "communities in rows, variables in columns"},
    // Cells
    {"t.csv", "3,4", "3,x", "",
     "t.csv, line 3, column 'leaf' (row 'Carex nigra'): 'x' is no number" + kWords},
    {"t.csv", "1.5", "\"1,5\"", "",
     "t.csv, line 2, column 'height' (row 'Poa annua'): '1,5' is no number (decimal commas need ; "
     "or "
     "tabs between the cells)" +
         kWords},
    {"t.csv", "", "OTU;h;l\nPoa annua;1,5;2.5\nCarex nigra;2;3\nStipa;3;4\n", "",
     "t.csv, line 2, column 'l' (row 'Poa annua'): '2.5' has another decimal mark than the numbers "
     "before it: use one in the whole table"},
    {"e.csv", "2,sand", "2,3", kE,
     "e.csv, line 3, column 'soil' (row 's2'): a number, where the column has words" + kWords},
    {"t.csv", "", "OTU,h,l\nPoa annua,1,NA\nCarex nigra,2,\nStipa,3,NaN\n", "",
     "t.csv, column 'l': every cell is missing: leave the column out"},
    {"c.csv", "0,3,0", "0,,0", "",
     "c.csv, line 3, column 'Carex nigra' (row 's2'): the cell is empty" + kZero},
    {"c.csv", "0,3,0", "0,NA,NA", "",
     "c.csv, line 3, column 'Carex nigra' (row 's2'): missing value NA" + kZero +
         " (and 1 more such cells in this table)"},
    {"c.csv", "0,3,0", "0,-3,0", "",
     "c.csv, line 3, column 'Carex nigra' (row 's2'): -3 is a negative quantity"},
    {"c.csv", "0,3,0", "0,Inf,0", "",
     "c.csv, line 3, column 'Carex nigra' (row 's2'): 'Inf' is infinite or too large: give a "
     "finite "
     "number"},
    {"c.csv", "0,3,0", "0,0,0", "",
     "c.csv: communities without any OTU, which falsify every statistic: 's2': leave them out with "
     "--drop-empty"},
    {"c.csv", "", "s,Poa annua,Carex nigra,Stipa\na,0,0,0\n", "--drop-empty",
     "every quantity in the table of communities is 0"},
    {"e.csv", "2,sand", "NA,sand", kE,
     "e.csv, line 3, column 'wet' (row 's2'): a missing value, which the environment must not "
     "have: "
     "fill it in or leave the row out of all tables"},
    {"e.csv", "2,sand", "-999,sand", kE,
     "e.csv, line 3, column 'wet' (row 's2'): -999 is the mark of a missing value: shift the "
     "variable "
     "by a constant, or leave the row out of all tables where it is missing"},
    {"y.csv", "Stipa,2", "Stipa,", "--types y.csv",
     "y.csv, line 2, column 'type' (row 'Stipa'): no type is given"},
    {"y.csv", "", "OTU,a,b\nStipa,1,2\n", "--types y.csv",
     "y.csv, line 1: 2 columns behind the names, where one of types belongs"},
    // Phylogenies
    {"p.csv", "4,4,0", "4,5,0", kP,
     "p.csv: the matrix is not symmetric: row 'Stipa', column 'Carex nigra' has 5, and row 'Carex "
     "nigra', column 'Stipa' has 4"},
    {"p.csv", "4,4,0", "4,4,1", kP,
     "p.csv, line 4, column 'Stipa' (row 'Stipa'): 1 is the distance of an OTU to itself, which "
     "must "
     "be 0: give --phylogeny-similarities where the matrix holds similarities"},
    {"p.csv", "Poa annua,0,3,4\n", "", kP,
     "p.csv: 2 rows and 3 columns: a phylogeny is a square matrix"},
    {"p.csv", "\nStipa", "\nStpa", kP,
     "p.csv: the row 'Stpa' has no column of its name (near 'Stipa'): a phylogeny has the same "
     "names "
     "over its rows and its columns"},
    {"p.csv", "3,0,4", "-3,0,4", kP,
     "p.csv, line 3, column 'Poa annua' (row 'Carex nigra'): -3 is a negative distance"},
    {"p.csv", "3,0,4", "NA,0,4", kP,
     "p.csv, line 3, column 'Poa annua' (row 'Carex nigra'): missing value NA: a phylogeny has no "
     "missing values"},
    {"", "", "", kP + " --phylogeny-similarities",
     "p.csv, line 2, column 'Carex nigra' (row 'Poa annua'): 3 is no similarity from 0 to 1: leave "
     "out "
     "--phylogeny-similarities where the matrix holds distances (and 5 more such cells in this "
     "table)"},
    {"p.nwk", ":1):1", ":1)", kN, "p.nwk, line 1, column 31: a branch without length"},
    {"p.nwk", "Stipa:2", "\nStipa", kN,
     "p.nwk, line 2, column 6: the branch of 'Stipa' has no length"},
    {"p.nwk", "Stipa:2", "Stipa:-2e1", kN, "p.nwk, line 1, column 40: the length -2e1 is negative"},
    {"p.nwk", "Stipa:2", "Stipa:inf", kN,
     "p.nwk, line 1, column 40: the length inf is no finite number"},
    {"p.nwk", "Stipa:2", "Stipa:2;", kN,
     "p.nwk, line 1, column 41: a comma or a closing parenthesis belongs here"},
    {"p.nwk", "Stipa", "", kN,
     "p.nwk, line 1, column 34: a tip without name: give each the name of its OTU"},
    {"p.nwk", "Stipa", "Poa_annua", kN,
     "p.nwk, line 1, column 34: a second tip of the name 'Poa_annua'"},
    {"p.nwk", "Stipa", "'Poa annua'", kN,
     "p.nwk: two tips are named 'Poa annua': give each a name of its own"},
    {"p.nwk", ";", "", kN, "p.nwk, line 2, column 1: the tree does not end here with ;"},
    {"p.nwk", ");", ");(a:1,b:1);", kN,
     "p.nwk, line 1, column 43: a second tree, or other text, behind the tree: leave one"},
    {"p.nwk", "", "#NEXUS", kN,
     "p.nwk, line 1, column 1: a NEXUS file: write the tree in the Newick form"},
    {"p.nwk", "nigra'", "nigra", kN,
     "p.nwk, line 1, column 15: a quote that begins here is not closed, or holds a line break"},
    {"p.nwk", "Stipa", "Stipa[x", kN,
     "p.nwk, line 1, column 39: a comment that begins here is not closed"},
    // Options
    {"", "", "", "--ordinal soil " + kE,
     "e.csv, line 2, column 'soil' (row 's1'): ordinal values must be numbers: give each word its "
     "number in their order"},
    {"", "", "", "--binary height",
     "t.csv, column 'height': told to be binary, but it has 3 different values", 2},
    {"", "", "", "--nominal hight",
     "--nominal: no trait or variable is named 'hight' (near 'height')", 2},
    {"", "", "", "--nominal leaf --ordinal leaf",
     "'leaf' is told to be nominal and ordinal: tell one kind", 2},
    {"", "", "", "--same-units " + kE,
     "--same-units: 'soil' is nominal, and only quantitative variables have units", 2},
    {"", "", "", "--trait-groups height", "--trait-groups: 'height' is not of the form trait=group",
     2},
    {"", "", "", "--trait-groups heigt=a",
     "--trait-groups: no trait is named 'heigt' (near 'height')", 2},
    {"", "", "", "--trait-groups height=a,height=b", "--trait-groups: 'height' is given twice", 2},
};

struct ImportOfWrong : InProcess {};

TEST_F(ImportOfWrong, EachGetsItsLine) {
    EXPECT_GE(kFaults.size(), 50U);
    for (const Fault& fault : kFaults) {
        for (const auto& [name, text] : kGood)
            folder_.Write(name, name != fault.file   ? text
                                : fault.good.empty() ? fault.bad
                                                     : Replaced(text, fault.good, fault.bad));
        const CommandRun run =
            RunCommand("import --traits t.csv --communities c.csv --session s " + fault.options);
        EXPECT_EQ(run.err, "TESSEL: " + fault.line + "\n") << fault.file << " " << fault.bad;
        EXPECT_EQ(run.status, fault.status) << fault.line;
        for (const char* left : {"sFormda.txt", "sTrk.txt", "sNames.csv"})
            EXPECT_FALSE(folder_.Has(left)) << fault.line;
    }
}

}  // namespace
