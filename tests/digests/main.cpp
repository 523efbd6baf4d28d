// Computes results from the fuzzing corpus, the samples and generated pictures, and compares their digests
// with a list, which verifies that all machines and compilers produce the same bytes. Without a list, it
// prints one. Usage: digests CORPUS PICTURES [LIST]
#include <cstdio>
#include <exception>
#include <map>
#include <sstream>
#include <string>

#include "digests/Results.h"
#include "support/TemporaryFolder.h"

namespace {

using List = std::map<std::string, std::string>;

List make_list(const std::string& seeds, const std::string& pictures) {
    varnoth::digests::Results results;
    varnoth::digests::add_decoded_seeds(results, seeds);
    varnoth::digests::add_decoded_pictures(results, pictures);
    varnoth::digests::add_pictures(results);
    varnoth::digests::add_palettes(results);
    varnoth::digests::add_sprites(results);
    List list;
    for (const auto& [name, digest] : results) {
        list[name] = digest.text();
    }
    return list;
}

List read_list(const std::string& path) {
    const auto bytes = varnoth::test::read_file(path);
    std::istringstream text(std::string(bytes.begin(), bytes.end()));
    List list;
    for (std::string digest, name; text >> digest >> name;) {
        list[name] = digest;
    }
    return list;
}

void print(const List& list) {
    for (const auto& [name, digest] : list) {
        std::printf("%s %s\n", digest.c_str(), name.c_str());
    }
}

std::string digest_in(const List& list, const std::string& name) {
    const auto found = list.find(name);
    return found == list.end() ? "none" : found->second;
}

int compare(const List& made, const List& listed) {
    List all = made;
    all.insert(listed.begin(), listed.end());
    int differences = 0;
    for (const auto& entry : all) {
        const std::string here = digest_in(made, entry.first);
        const std::string there = digest_in(listed, entry.first);
        if (here != there) {
            std::printf("%s: %s, expected %s\n", entry.first.c_str(), here.c_str(), there.c_str());
            ++differences;
        }
    }
    std::printf("%zu results, %d differ\n", made.size(), differences);
    return differences == 0 && !made.empty() ? 0 : 1;
}

int run(int count, char** arguments) {
    const List made = make_list(arguments[1], arguments[2]);
    if (count == 3) {
        print(made);
        return 0;
    }
    return compare(made, read_list(arguments[3]));
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3 && count != 4) {
        std::fputs("usage: digests CORPUS PICTURES [LIST]\n", stderr);
        return 64;
    }
    try {
        return run(count, arguments);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "results: %s\n", failure.what());
        return 1;
    }
}
