#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Files.h"

namespace store {

// Two other makers of readers and writers, each a program.
enum class Peer { plistlib, libplist };

using Opinion = std::optional<std::string>;  // what a file says, see Said.h; nothing when it is no dictionary

Opinion ourOpinion(std::string_view bytes);

struct Opinions {
    Opinion ours;
    Opinion plistlib;
    Opinion libplist;
};

std::vector<Opinions> opinionsOf(const std::vector<std::string>& files);

// Files in a folder, for a peer to look at.
class PeerFolder {
public:
    explicit PeerFolder(const std::vector<std::string>& files);

    std::vector<Opinion> ask(Peer peer) const;
    // It also writes what it has read.
    std::vector<Opinion> askToWrite(Peer peer) const;
    std::string writtenAsXml(std::size_t number) const;
    std::string writtenAsBinary(std::size_t number) const;

private:
    std::filesystem::path file(std::size_t number, const std::string& suffix = "") const;
    std::vector<Opinion> answers(Peer peer, const std::string& option) const;

    TemporaryDirectory directory_;
    std::size_t count_;
};

}  // namespace store
