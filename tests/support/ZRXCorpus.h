// Test support: the documents of the real-world PMML corpus. The corpus of
// the tree (tests/corpus) is always read; a build may add an extra corpus
// (ZRX_EXTRA_CORPUS_DIR, its pmml/ folder), whose documents are read when the
// tree has no document of the same name.
#ifndef ZRX_TEST_CORPUS_H
#define ZRX_TEST_CORPUS_H

#include "ZRXCorpusConfig.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace zrxtest {

struct CorpusFile {
    std::string name;           // "<folder>/<file>", the same in both corpora
    std::filesystem::path path; // where it is read from
    bool inTree;
};

inline const std::filesystem::path& CorpusDir()
{
    static const std::filesystem::path dir(ZRX_CORPUS_DIR);
    return dir;
}

// Empty when the build names no extra corpus.
inline const std::filesystem::path& ExtraCorpusDir()
{
    static const std::filesystem::path dir(ZRX_EXTRA_CORPUS_DIR);
    return dir;
}

// The PMML documents (.pmml and .xml files) under `dir`, by name.
inline std::vector<CorpusFile> DocumentsUnder(const std::filesystem::path& dir, bool inTree)
{
    std::vector<CorpusFile> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(dir)) {
        const std::string extension = entry.path().extension().string();
        if (!entry.is_regular_file() || (extension != ".pmml" && extension != ".xml"))
            continue;
        files.push_back(
            {entry.path().lexically_relative(dir).generic_string(), entry.path(), inTree});
    }
    std::sort(files.begin(), files.end(),
              [](const CorpusFile& a, const CorpusFile& b) { return a.name < b.name; });
    return files;
}

// Every document of the tree's corpus, then those of the extra corpus that
// the tree does not have.
inline std::vector<CorpusFile> CorpusFiles()
{
    std::vector<CorpusFile> files = DocumentsUnder(CorpusDir(), true);
    std::set<std::string> names;
    for (const CorpusFile& own : files)
        names.insert(own.name);
    if (!ExtraCorpusDir().empty())
        for (CorpusFile& extra : DocumentsUnder(ExtraCorpusDir(), false))
            if (names.count(extra.name) == 0)
                files.push_back(std::move(extra));
    return files;
}

// The part `shard` of `shards` of CorpusFiles(), parts of like size: the
// largest documents first, each to the part that holds the fewest bytes, so
// that a pass over the corpus splits into tests of like length.
inline std::vector<CorpusFile> CorpusShard(int shard, int shards)
{
    std::vector<CorpusFile> all = CorpusFiles();
    const auto size = [](const CorpusFile& file) { return std::filesystem::file_size(file.path); };
    std::stable_sort(all.begin(), all.end(),
                     [&](const CorpusFile& a, const CorpusFile& b) { return size(a) > size(b); });
    std::vector<std::uintmax_t> load(static_cast<std::size_t>(shards), 0);
    std::vector<CorpusFile> part;
    for (CorpusFile& file : all) {
        const auto lightest = std::min_element(load.begin(), load.end());
        *lightest += size(file);
        if (lightest - load.begin() == shard)
            part.push_back(std::move(file));
    }
    return part;
}

// Where the document of that name is read from; empty if neither corpus has it.
inline std::filesystem::path CorpusPath(const std::string& name)
{
    for (const std::filesystem::path& dir : {CorpusDir(), ExtraCorpusDir()})
        if (!dir.empty() && std::filesystem::is_regular_file(dir / name))
            return dir / name;
    return {};
}

} // namespace zrxtest

#endif
