// Desktop entries and launchers as packages have them, and processes as the kernel shows them.
#include "engine/programs/Programs.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <regex>
#include <utility>

#include "store/Files.h"

namespace {

namespace fs = std::filesystem;

// Path to content: "-> target" is a link, "ELF" a program. Everything is executable but for the entries.
using Tree = std::vector<std::pair<std::string, std::string>>;

constexpr auto program = "ELF";

void build(const Tree& tree, const fs::path& root) {
    for (const auto& [path, content] : tree) {
        const fs::path place = root / path;
        fs::create_directories(place.parent_path());
        if (content.starts_with("-> ")) {
            fs::create_symlink(content.substr(3), place);
            continue;
        }
        std::ofstream(place) << (content == program ? "\x7f"
                                                      "ELF" +
                                                          std::string(60, '\0')
                                                    : content);
        if (place.extension() != ".desktop") fs::permissions(place, fs::perms::owner_all);
    }
}

std::pair<std::string, std::string> entry(const std::string& id, const std::string& exec,
                                          const std::string& more = {}) {
    return {"usr/share/applications/" + id + ".desktop",
            "[Desktop Entry]\nType=Application\nName=" + id + "\nExec=" + exec + '\n' + more};
}

// The programs in one line each, or the reason.
std::string told(const engine::Programs& programs, const std::string& app) {
    if (const auto why = programs.unknown.find(app); why != programs.unknown.end()) return "? " + why->second;
    std::string text;
    for (const engine::Program& found : programs.known.at(app)) {
        text += (text.empty() ? "" : " + ") + found.path;
        if (!found.command.empty()) text += " with " + found.command;
        if (!found.flatpak.empty()) text += "flatpak " + found.flatpak;
        if (!found.snap.empty()) text += "snap " + found.snap;
    }
    return text;
}

struct Case {
    const char* what;
    Tree tree;
    std::vector<std::string> apps;
    std::vector<std::string> told;  // of each app
};

const std::pair<std::string, std::string> python[] = {{"usr/bin/python3", "-> python3.11"},
                                                      {"usr/bin/python3.11", program}};

std::vector<Case> cases() {
    const std::string soffice = "usr/lib/libreoffice/program/soffice";
    const std::string dirname = "#!/bin/sh\nhere=\"$(dirname \"$(readlink -f \"$0\")\")\"\n";
    return {
        {"a program by its path, by a link, in a folder of games, behind links that leave the root",
         {entry("firefox-esr", "/usr/lib/firefox-esr/firefox-esr %u"),
          {"usr/lib/firefox-esr/firefox-esr", program},
          entry("gimp", "gimp-2.10 %U", "TryExec=gimp\n"),
          {"usr/bin/gimp-2.10", program},
          {"usr/bin/gimp", "-> ../../../../usr/bin/gimp-2.10"},
          entry("chess", "chess"),
          {"usr/games/chess", "-> /etc/alternatives/chess"},
          {"etc/alternatives/chess", "-> /usr/games/gnuchess"},
          {"usr/games/gnuchess", program}},
         {"firefox-esr", "gimp", "chess"},
         {"/usr/lib/firefox-esr/firefox-esr", "/usr/bin/gimp-2.10", "/usr/games/gnuchess"}},
        {"quotes, field codes and env",
         {entry("quoted", R"("/opt/A \\$ app/run" --title "%c" %U)"),
          {"opt/A $ app/run", program},
          entry("env", "env -u A GTK_THEME=x B=y tool %f"),
          {"usr/bin/env", program},
          {"usr/bin/tool", program},
          entry("broken", "\"tool"),
          entry("optioned", "env -S tool"),
          entry("relative", "bin/run", "Path=/opt/folder\n"),
          {"opt/folder/bin/run", program}},
         {"quoted", "env", "broken", "optioned", "relative"},
         {"/opt/A $ app/run", "/usr/bin/tool", "? its entry names no program", "? what its env starts cannot be told",
          "/opt/folder/bin/run"}},
        {"launchers",
         {{"bin/sh", program},
          {"bin/bash", program},
          entry("chromium", "/usr/bin/chromium %U"),
          {"usr/bin/chromium",
           "#!/bin/sh\nAPPNAME=chromium\nLIBDIR=/usr/lib/$APPNAME\nusage () {\n  echo \"$APPNAME\nexec /bin/no\"\n}\n"
           "find x \\( -name \"*.meta\" \\) -exec rm \\{\\} \\;\ncase `uname -m` in\n  -g | --debug ) shift ;;\nesac\n"
           "cat <<E\nexec /usr/bin/other\nE\n"
           "if [ $t -eq 0 ] ; then\n  exec $LIBDIR/$APPNAME $CHROMIUM_FLAGS \"$@\"\nfi\n"},
          {"usr/lib/chromium/chromium", program},
          entry("thunderbird", "/usr/bin/thunderbird %u"),
          {"usr/bin/thunderbird",
           "#!/bin/bash\nLINE=$(echo \"${ARGS[@]}\" | sed "
           "\"s/'/\\\"/g\")\nMOZ_APP_NAME=thunderbird\nMOZ_LIBDIR=/usr/lib/${MOZ_APP_NAME}\n"
           "    exec \"${MOZ_LIBDIR}\"/\"${MOZ_APP_NAME}\" \"${TB_ARGS[@]}\"\n  LANG='' eval \"exec ${LINE}\"\n"},
          {"usr/lib/thunderbird/thunderbird", program},
          entry("beside", "beside"),
          {"usr/bin/beside", "-> /opt/beside/start"},
          {"opt/beside/start", dirname + "exec -a \"$0\" \"$here/real\" \"$@\" 2>&1\n"},
          {"opt/beside/real", program},
          entry("quiet", "quiet"),
          {"usr/bin/quiet", "#!/usr/bin/env -S bash\nexec > /tmp/log 2>&1\nexec env A=b tool --x\n"},
          {"usr/bin/tool", program}},
         {"chromium", "thunderbird", "beside", "quiet"},
         {"/usr/lib/chromium/chromium", "/usr/lib/thunderbird/thunderbird", "/opt/beside/real", "/usr/bin/tool"}},
        {"launchers that are not certain",
         {{"bin/sh", program},
          {"usr/bin/a", program},
          {"usr/bin/b", program},
          entry("default", "default"),
          {"usr/bin/default", "#!/bin/sh\n: \"${X=a}\"\nexec \"$X\" \"$@\"\n"},
          entry("either", "either"),
          {"usr/bin/either", "#!/bin/sh\nX=a\nif test -e /b; then X=b; fi\nexec $X\n"},
          entry("both", "both"),
          {"usr/bin/both", "#!/bin/sh\ntest -e /b && exec b\nexec a\n"},
          entry("helped", "helped"),
          {"usr/bin/helped", "#!/bin/sh\ntest -n \"$1\" || exec a --help\nb \"$@\"\n"},
          entry("called", "called"),
          {"usr/bin/called", "#!/bin/sh\na\n"},
          entry("round", "round"),
          {"usr/bin/round", "#!/bin/sh\nexec round \"$@\"\n"},
          entry("ring", "ring-of-links"),
          {"usr/bin/ring-of-links", "-> ring-of-links"},
          entry("folder", "/usr/bin"),
          entry("text", "text"),
          {"usr/bin/text", "exec a"},
          entry("tried", "a", "TryExec=absent\n")},
         {"default", "either", "both", "helped", "called", "round", "ring", "folder", "text", "tried", "absent"},
         {"? what the script /usr/bin/default starts cannot be told",
          "? what the script /usr/bin/either starts cannot be told",
          "? what the script /usr/bin/both starts cannot be told",
          "? what the script /usr/bin/helped starts cannot be told",
          "? what the script /usr/bin/called starts cannot be told", "? its launchers start one another",
          "? ring-of-links is not installed", "? /usr/bin is not installed",
          "? /usr/bin/text is neither a program nor a script", "? absent is not installed",
          "? it is not among the apps that are installed for everybody"}},
        {"scripts of an interpreter",
         {python[0],
          python[1],
          entry("gajim", "gajim %u"),
          {"usr/bin/gajim", "#!/usr/bin/python3\nimport re\n"},
          entry("calibre", "calibre"),
          {"usr/bin/calibre", "#! /usr/bin/env python3.11\n"},
          entry("given", "python3 -u /opt/given.py %f"),
          {"opt/given.py", "import re"},
          entry("python3.11", "/usr/bin/python3.11"),
          entry("module", "python3 -m module"),
          entry("spaced", "\"/opt/a b\""),
          {"opt/a b", "#!/usr/bin/python3\n"},
          entry("opener", "xdg-open https://example.net"),
          {"usr/bin/xdg-open", "#!/usr/bin/python3\n"}},
         {"gajim", "calibre", "given", "python3.11", "module", "spaced", "opener"},
         {"/usr/bin/python3.11 with ^[^ ]+(?: -[^ ]+)* (?:(?:/usr)?/bin/gajim)(?: |$)",
          "/usr/bin/python3.11 with ^[^ ]+(?: -[^ ]+)* (?:(?:/usr)?/bin/calibre)(?: |$)",
          "/usr/bin/python3.11 with ^[^ ]+(?: -[^ ]+)* (?:/opt/given\\.py)(?: |$)",
          "? /usr/bin/python3.11 runs many apps", "? /usr/bin/python3.11 runs many apps",
          "? /opt/a b has a name that a command line does not tell apart",
          "? /usr/bin/xdg-open starts other programs"}},
        {"programs of several entries",
         {{"bin/sh", program},
          entry("libreoffice-writer", "libreoffice --writer %U"),
          entry("libreoffice-calc", "libreoffice --calc %U"),
          {"usr/bin/libreoffice", "-> ../lib/libreoffice/program/soffice"},
          {soffice, "#!/bin/sh\nexec $V \"$sd_prog/oosplash\" \"$@\"\n"},
          {"usr/lib/libreoffice/program/oosplash", program},
          {"usr/lib/libreoffice/program/soffice.bin", program},
          entry("vlc", "vlc --started-from-file %U"),
          entry("vlc-opendvd", "vlc dvd://%f", "NoDisplay=true\n"),
          {"usr/bin/vlc", program},
          entry("web", "web"),
          entry("web-private", "web --private"),
          {"usr/bin/web", program},
          entry("editor", "edit %U"),
          entry("org.example.Editor", "edit %f"),
          {"usr/bin/edit", program}},
         {"libreoffice-writer", "vlc", "web", "web-private", "editor"},
         {"? shared with libreoffice-calc", "/usr/bin/vlc", "/usr/bin/web", "? shared with web", "/usr/bin/edit"}},
        {"one suite alone, and one program under two names",
         {{"bin/sh", program},
          entry("libreoffice-writer", "/opt/office/program/soffice --writer"),
          {"opt/office/program/soffice", "#!/bin/sh\n"},
          {"opt/office/program/oosplash", program},
          {"opt/office/program/soffice.bin", program},
          entry("editor", "edit %U"),
          entry("org.example.Editor", "edit %f"),
          {"usr/bin/edit", program}},
         {"libreoffice-writer", "editor", "org.example.Editor"},
         {"/opt/office/program/oosplash + /opt/office/program/soffice.bin", "? shared with org.example.Editor",
          "? shared with editor"}},
        {"Flatpak and Snap",
         {entry("org.example.App", "/usr/bin/flatpak run --branch=stable --command=app org.example.App @@u %U @@",
                "X-Flatpak=org.example.App\n"),
          entry("odd", "flatpak run org.example.Other", "X-Flatpak=org.example.App\n"),
          entry("mail_mail", "env BAMF_DESKTOP_FILE_HINT=/x.desktop /snap/bin/mail.gui %U",
                "X-SnapInstanceName=mail\n"),
          entry("chat_x_chat", "/snap/bin/chat_x", "X-SnapInstanceName=chat_x\n")},
         {"org.example.App", "odd", "mail_mail", "chat_x_chat"},
         {"flatpak org.example.App", "? its Flatpak cannot be told", "snap mail", "snap chat_x"}},
    };
}

TEST(Programs, OfEntriesAndLaunchers) {
    for (const Case& row : cases()) {
        const store::TemporaryDirectory root;
        build(row.tree, root.path());
        const engine::Programs programs = engine::findPrograms(row.apps, root.path());
        EXPECT_EQ(programs.known.size() + programs.unknown.size(), row.apps.size()) << row.what;
        for (std::size_t i = 0; i < row.apps.size(); ++i)
            EXPECT_EQ(told(programs, row.apps[i]), row.told[i]) << row.what << ": " << row.apps[i];
    }
}

TEST(Programs, APipeInAProgramsPlaceIsNotOpened) {
    const store::TemporaryDirectory root;
    build({entry("pipe", "/opt/pipe-of-nobody")}, root.path());
    fs::create_directories(root / "opt");
    ASSERT_EQ(::mkfifo((root / "opt/pipe-of-nobody").c_str(), 0700), 0);
    EXPECT_EQ(told(engine::findPrograms({"pipe"}, root.path()), "pipe"), "? /opt/pipe-of-nobody is not installed");
}

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// A process of its own while it lives; it has become its program when the constructor is through.
class Process {
public:
    explicit Process(const std::vector<std::string>& arguments) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) return;
        id_ = ::fork();
        if (id_ == 0) {
            std::vector<char*> words;
            for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
            words.push_back(nullptr);
            ::execv(words.front(), words.data());
            ::_exit(127);
        }
        ::close(ends[1]);
        char nothing = 0;
        while (::read(ends[0], &nothing, 1) > 0) {
        }  // ends as the program takes the process over
        ::close(ends[0]);
    }
    ~Process() {
        ::kill(id_, SIGKILL);
        ::waitpid(id_, nullptr, 0);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    bool is(const engine::Program& wanted) const {
        const fs::path folder = "/proc/" + std::to_string(id_);
        std::string command = contentOf(folder / "cmdline");
        if (command.ends_with('\0')) command.pop_back();
        std::replace(command.begin(), command.end(), '\0', ' ');
        return fs::read_symlink(folder / "exe") == wanted.path &&
               (wanted.command.empty() || std::regex_search(command, std::regex(wanted.command)));
    }

private:
    pid_t id_ = -1;
};

TEST(Programs, AreWhatTheKernelShows) {
    const store::TemporaryDirectory root;
    const std::string folder = fs::canonical(root.path()).string();
    const std::string interpreter = "/usr/bin/python3";
    if (!fs::exists(interpreter)) GTEST_SKIP() << "there is no " << interpreter;
    fs::copy_file(fs::canonical("/usr/bin/sleep"), folder + "/napper");
    const std::string waiting = "#!" + interpreter + "\nimport time\ntime.sleep(600)\n";
    // Paths of the host: none of them exists below the root once more.
    build({{"nap", "-> napper"},
           {"mail", waiting},
           {"chat", waiting},
           {"start", "#!/bin/sh\ndir=$(dirname \"$0\")\nexec \"$dir/nap\" \"$@\"\n"},
           entry("nap", folder + "/start 600"),
           entry("mail", folder + "/mail %u"),
           entry("chat", folder + "/chat")},
          folder);
    const engine::Programs programs = engine::findPrograms({"nap", "mail", "chat"}, folder);
    ASSERT_EQ(programs.known.size(), 3U) << told(programs, "nap") << told(programs, "mail") << told(programs, "chat");

    const Process nap({folder + "/nap", "600"}), mail({folder + "/mail", "--now"}),
        optioned({interpreter, "-u", "-B", folder + "/mail"}),
        reader({interpreter, folder + "/chat", folder + "/mail"});
    const struct {
        const Process& process;
        const char* app;  // the only one that it is
    } rows[] = {{nap, "nap"}, {mail, "mail"}, {optioned, "mail"}, {reader, "chat"}};
    for (const auto& [process, app] : rows)
        for (const auto& [id, known] : programs.known) EXPECT_EQ(process.is(known.front()), id == app) << app << id;
}

}  // namespace
