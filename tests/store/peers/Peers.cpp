#include "store/peers/Peers.h"

#include <cstdio>
#include <stdexcept>

#include "store/Values.h"
#include "store/peers/Said.h"

namespace store {

Opinion ourOpinion(std::string_view bytes) {
    const ReadResult result = readText(bytes);
    const auto* dictionary = std::get_if<Dictionary>(&result);
    if (!dictionary) return std::nullopt;
    return saidBy(Value(*dictionary));
}

std::vector<Opinions> opinionsOf(const std::vector<std::string>& files) {
    const PeerFolder folder(files);
    const auto plistlib = folder.ask(Peer::plistlib);
    const auto libplist = folder.ask(Peer::libplist);
    std::vector<Opinions> opinions;
    for (std::size_t i = 0; i < files.size(); ++i) opinions.push_back({ourOpinion(files[i]), plistlib[i], libplist[i]});
    return opinions;
}

PeerFolder::PeerFolder(const std::vector<std::string>& files) : count_(files.size()) {
    for (std::size_t i = 0; i < files.size(); ++i) put(file(i), files[i]);
}

std::vector<Opinion> PeerFolder::ask(Peer peer) const {
    return answers(peer, "");
}

std::vector<Opinion> PeerFolder::askToWrite(Peer peer) const {
    return answers(peer, " --write");
}

std::string PeerFolder::writtenAsXml(std::size_t number) const {
    return contentOf(file(number, ".xml"));
}

std::string PeerFolder::writtenAsBinary(std::size_t number) const {
    return contentOf(file(number, ".binary"));
}

std::filesystem::path PeerFolder::file(std::size_t number, const std::string& suffix) const {
    return directory_ / (std::to_string(100'000 + number) + suffix);
}

// A peer's program says a line for each file, in the order of their names.
std::vector<Opinion> PeerFolder::answers(Peer peer, const std::string& option) const {
    const std::string program = peer == Peer::plistlib ? PYTHON " " PLISTLIB : LIBPLIST;
    FILE* output = popen((program + option + " '" + directory_.path().string() + "'").c_str(), "r");
    if (!output) throw std::runtime_error("no process");
    std::vector<Opinion> said;
    std::string line;
    for (int c; (c = std::fgetc(output)) != EOF;) {
        if (c != '\n') {
            line.push_back(static_cast<char>(c));
            continue;
        }
        said.push_back(line == "-" ? std::nullopt : Opinion(line));
        line.clear();
    }
    if (pclose(output) != 0 || said.size() != count_) throw std::runtime_error(program + " does not answer");
    return said;
}

}  // namespace store
