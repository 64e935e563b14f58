// libplist [--write] FOLDER: what libplist makes of the property lists in a folder, as plistlib.py says it.
#include <plist/plist.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <vector>

#include "store/Files.h"
#include "store/peers/Said.h"

namespace store {

namespace {

using Owned = std::unique_ptr<char, decltype(&std::free)>;

template <auto get>
std::string bytesOf(plist_t node) {
    std::uint64_t size = 0;
    const char* bytes = get(node, &size);
    return {bytes, bytes ? static_cast<std::size_t>(size) : 0};
}

template <class Number, auto get>
Number numberOf(plist_t node) {
    Number number{};
    get(node, &number);
    return number;
}

std::string saidBy(plist_t node);

std::string arraySaid(plist_t array) {
    std::string text;
    for (std::uint32_t i = 0; i < plist_array_get_size(array); ++i)
        text += (i > 0 ? "," : "") + saidBy(plist_array_get_item(array, i));
    return "[" + text + "]";
}

std::string dictionarySaid(plist_t dictionary) {
    plist_dict_iter position = nullptr;
    plist_dict_new_iter(dictionary, &position);
    const Owned owner(static_cast<char*>(position), std::free);
    std::vector<std::string> entries;
    for (;;) {
        char* key = nullptr;
        plist_t element = nullptr;
        plist_dict_next_item(dictionary, position, &key, &element);
        const Owned text(key, std::free);
        if (!element) break;
        entries.push_back("s" + said::hexadecimal(key) + "=" + saidBy(element));
    }
    std::sort(entries.begin(), entries.end());
    std::string text;
    for (const std::string& entry : entries) text += (text.empty() ? "" : ",") + entry;
    return "{" + text + "}";
}

// Its dates count from 2001.
std::string dateSaid(plist_t node) {
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return "d" + std::to_string(std::int64_t{seconds} + 978'307'200);
}

std::string saidBy(plist_t node) {
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN:
            return numberOf<std::uint8_t, plist_get_bool_val>(node) ? "yes" : "no";
        case PLIST_UINT:
            return said::integer(numberOf<std::uint64_t, plist_get_uint_val>(node));
        case PLIST_REAL:
            return said::real(numberOf<double, plist_get_real_val>(node));
        case PLIST_STRING:
            return "s" + said::hexadecimal(bytesOf<plist_get_string_ptr>(node));
        case PLIST_DATA:
            return "x" + said::hexadecimal(bytesOf<plist_get_data_ptr>(node));
        case PLIST_DATE:
            return dateSaid(node);
        case PLIST_ARRAY:
            return arraySaid(node);
        case PLIST_DICT:
            return dictionarySaid(node);
        default:
            return "?";
    }
}

template <auto write>
void put(const std::filesystem::path& path, plist_t list) {
    char* bytes = nullptr;
    std::uint32_t size = 0;
    write(list, &bytes, &size);
    const Owned owner(bytes, std::free);
    store::put(path, {bytes, size});
}

void answer(const std::filesystem::path& file, bool isWriting) {
    const std::string bytes = contentOf(file);
    plist_t list = nullptr;
    plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &list);
    const bool isDictionary = list && plist_get_node_type(list) == PLIST_DICT;
    std::cout << (isDictionary ? saidBy(list) : "-") << '\n' << std::flush;
    if (!isDictionary || !isWriting) return;
    put<plist_to_xml>(file.string() + ".xml", list);
    put<plist_to_bin>(file.string() + ".binary", list);
}

// It does not survive every file (a key with a 0 in it ends the process): then the next process goes on behind it.
void answerAll(const std::vector<std::filesystem::path>& files, bool isWriting) {
    void* shared = mmap(nullptr, sizeof(std::size_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto& next = *static_cast<std::size_t*>(shared);
    while (next < files.size()) {
        const pid_t child = fork();
        if (child == 0) {
            close(STDERR_FILENO);
            for (; next < files.size(); ++next) answer(files[next], isWriting);
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        if (WIFEXITED(status)) continue;
        std::cout << "-\n" << std::flush;
        ++next;
    }
}

}  // namespace

}  // namespace store

int main(int argc, char** argv) {
    const bool isWriting = argc == 3 && argv[1] == std::string_view("--write");
    if (argc != (isWriting ? 3 : 2)) return 2;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argv[argc - 1])) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    store::answerAll(files, isWriting);
    return 0;
}
