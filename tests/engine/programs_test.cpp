// Desktop entries and launchers as packages have them, and processes as the kernel shows them.
#include "engine/programs/Programs.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <regex>

#include "store/Files.h"

namespace {

namespace fs = std::filesystem;

// Path to content: "-> target" is a link. Everything is executable but for the entries.
using Tree = std::vector<std::pair<std::string, std::string>>;

const std::string program = "\x7f\x45LF" + std::string(60, '\0');

void build(const Tree& tree, const fs::path& root) {
    for (const auto& [path, content] : tree) {
        const fs::path place = root / path;
        fs::create_directories(place.parent_path());
        if (content.starts_with("-> ")) {
            fs::create_symlink(content.substr(3), place);
            continue;
        }
        store::put(place, content);
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

struct App {
    std::string id, exec, told, more = {};  // nothing told: an entry that is not asked about; no exec: there is none
};

struct Case {
    const char* what;
    std::vector<App> apps;
    std::vector<std::string> programs;  // where there is one
    Tree others;
};

std::string cannotTell(const std::string& script) {
    return "? what the script /usr/bin/" + script + " starts cannot be told";
}

std::string scriptOfPython(const std::string& file) {
    return "/usr/bin/python3.11 with ^[^ ]+(?: -[^ ]+)* (?:" + file + ")(?: |$)";
}

std::vector<Case> cases() {
    const std::string dirname = "#!/bin/sh\nhere=\"$(dirname \"$(readlink -f \"$0\")\")\"\n";
    return {
        {"a program by its path, by a link, in a folder of games, behind links that leave the root",
         {{"firefox-esr", "/usr/lib/firefox-esr/firefox-esr %u", "/usr/lib/firefox-esr/firefox-esr"},
          {"gimp", "gimp-2.10 %U", "/usr/bin/gimp-2.10", "TryExec=gimp\n"},
          {"chess", "chess", "/usr/games/gnuchess"}},
         {"usr/lib/firefox-esr/firefox-esr", "usr/bin/gimp-2.10", "usr/games/gnuchess"},
         {{"usr/bin/gimp", "-> ../../../../usr/bin/gimp-2.10"},
          {"usr/games/chess", "-> /etc/alternatives/chess"},
          {"etc/alternatives/chess", "-> /usr/games/gnuchess"}}},
        {"quotes, field codes and env",
         {{"quoted", R"("/opt/A \\$ app/run" --title "%c" %U)", "/opt/A $ app/run"},
          {"env", "env -u A GTK_THEME=x B=y tool %f", "/usr/bin/tool"},
          {"broken", "\"tool", "? its entry names no program"},
          {"optioned", "env -S tool", "? what its env starts cannot be told"},
          {"relative", "bin/run", "/opt/folder/bin/run", "Path=/opt/folder\n"}},
         {"opt/A $ app/run", "usr/bin/env", "usr/bin/tool", "opt/folder/bin/run"},
         {}},
        {"launchers",
         {{"chromium", "/usr/bin/chromium %U", "/usr/lib/chromium/chromium"},
          {"thunderbird", "/usr/bin/thunderbird %u", "/usr/lib/thunderbird/thunderbird"},
          {"beside", "beside", "/opt/beside/real"},
          {"quiet", "quiet", "/usr/bin/tool"}},
         {"bin/sh", "bin/bash", "usr/lib/chromium/chromium", "usr/lib/thunderbird/thunderbird", "opt/beside/real",
          "usr/bin/tool"},
         {{"usr/bin/chromium",
           "#!/bin/sh\nAPPNAME=chromium\nLIBDIR=/usr/lib/$APPNAME\nusage () {\n  echo \"$APPNAME\nexec /bin/no\"\n}\n"
           "find x \\( -name \"*.meta\" \\) -exec rm \\{\\} \\;\ncase `uname -m` in\n  -g | --debug ) shift ;;\nesac\n"
           "cat <<E\nexec /usr/bin/other\nE\n"
           "if [ $t -eq 0 ] ; then\n  exec $LIBDIR/$APPNAME $CHROMIUM_FLAGS \"$@\"\nfi\n"},
          {"usr/bin/thunderbird",
           "#!/bin/bash\nLINE=$(echo \"${ARGS[@]}\" | sed "
           "\"s/'/\\\"/g\")\nMOZ_APP_NAME=thunderbird\nMOZ_LIBDIR=/usr/lib/${MOZ_APP_NAME}\n"
           "    exec \"${MOZ_LIBDIR}\"/\"${MOZ_APP_NAME}\" \"${TB_ARGS[@]}\"\n  LANG='' eval \"exec ${LINE}\"\n"},
          {"usr/bin/beside", "-> /opt/beside/start"},
          {"opt/beside/start", dirname + "exec -a \"$0\" \"$here/real\" \"$@\" 2>&1\n"},
          {"usr/bin/quiet", "#!/usr/bin/env -S bash\nexec > /tmp/log 2>&1\nexec env A=b tool --x\n"}}},
        {"launchers that are not certain",
         {{"default", "default", cannotTell("default")},
          {"either", "either", cannotTell("either")},
          {"both", "both", cannotTell("both")},
          {"helped", "helped", cannotTell("helped")},
          {"called", "called", cannotTell("called")},
          {"round", "round", "? its launchers start one another"},
          {"ring", "ring-of-links", "? ring-of-links is not installed"},
          {"folder", "/usr/bin", "? /usr/bin is not installed"},
          {"text", "text", "? /usr/bin/text is neither a program nor a script"},
          {"tried", "a", "? absent is not installed", "TryExec=absent\n"},
          {"absent", "", "? it is not among the apps that are installed for everybody"}},
         {"bin/sh", "usr/bin/a", "usr/bin/b"},
         {{"usr/bin/default", "#!/bin/sh\n: \"${X=a}\"\nexec \"$X\" \"$@\"\n"},
          {"usr/bin/either", "#!/bin/sh\nX=a\nif test -e /b; then X=b; fi\nexec $X\n"},
          {"usr/bin/both", "#!/bin/sh\ntest -e /b && exec b\nexec a\n"},
          {"usr/bin/helped", "#!/bin/sh\ntest -n \"$1\" || exec a --help\nb \"$@\"\n"},
          {"usr/bin/called", "#!/bin/sh\na\n"},
          {"usr/bin/round", "#!/bin/sh\nexec round \"$@\"\n"},
          {"usr/bin/ring-of-links", "-> ring-of-links"},
          {"usr/bin/text", "exec a"}}},
        {"scripts of an interpreter",
         {{"gajim", "gajim %u", scriptOfPython("(?:/usr)?/bin/gajim")},
          {"calibre", "calibre", scriptOfPython("(?:/usr)?/bin/calibre")},
          {"given", "python3 -u /opt/given.py %f", scriptOfPython("/opt/given\\.py")},
          {"python3.11", "/usr/bin/python3.11", "? /usr/bin/python3.11 runs many apps"},
          {"module", "python3 -m module", "? /usr/bin/python3.11 runs many apps"},
          {"spaced", "\"/opt/a b\"", "? /opt/a b has a name that a command line does not tell apart"},
          {"opener", "xdg-open https://example.net", "? /usr/bin/xdg-open starts other programs"}},
         {"usr/bin/python3.11"},
         {{"usr/bin/python3", "-> python3.11"},
          {"usr/bin/gajim", "#!/usr/bin/python3\nimport re\n"},
          {"usr/bin/calibre", "#! /usr/bin/env python3.11\n"},
          {"opt/given.py", "import re"},
          {"opt/a b", "#!/usr/bin/python3\n"},
          {"usr/bin/xdg-open", "#!/usr/bin/python3\n"}}},
        {"programs of several entries",
         {{"libreoffice-writer", "libreoffice --writer %U", "? shared with libreoffice-calc"},
          {"libreoffice-calc", "libreoffice --calc %U", ""},
          {"vlc", "vlc --started-from-file %U", "/usr/bin/vlc"},
          {"vlc-opendvd", "vlc dvd://%f", "", "NoDisplay=true\n"},
          {"web", "web", "/usr/bin/web"},
          {"web-private", "web --private", "? shared with web"},
          {"editor", "edit %U", "/usr/bin/edit"},
          {"org.example.Editor", "edit %f", ""}},
         {"bin/sh", "usr/lib/libreoffice/program/oosplash", "usr/lib/libreoffice/program/soffice.bin", "usr/bin/vlc",
          "usr/bin/web", "usr/bin/edit"},
         {{"usr/bin/libreoffice", "-> ../lib/libreoffice/program/soffice"},
          {"usr/lib/libreoffice/program/soffice", "#!/bin/sh\nexec $V \"$sd_prog/oosplash\" \"$@\"\n"}}},
        {"one suite alone, and one program under two names",
         {{"libreoffice-writer", "/opt/office/program/soffice --writer",
           "/opt/office/program/oosplash + /opt/office/program/soffice.bin"},
          {"editor", "edit %U", "? shared with org.example.Editor"},
          {"org.example.Editor", "edit %f", "? shared with editor"}},
         {"bin/sh", "opt/office/program/oosplash", "opt/office/program/soffice.bin", "usr/bin/edit"},
         {{"opt/office/program/soffice", "#!/bin/sh\n"}}},
        {"Flatpak and Snap",
         {{"org.example.App", "/usr/bin/flatpak run --branch=stable --command=app org.example.App @@u %U @@",
           "flatpak org.example.App", "X-Flatpak=org.example.App\n"},
          {"odd", "flatpak run org.example.Other", "? its Flatpak cannot be told", "X-Flatpak=org.example.App\n"},
          {"mail_mail", "env BAMF_DESKTOP_FILE_HINT=/x.desktop /snap/bin/mail.gui %U", "snap mail",
           "X-SnapInstanceName=mail\n"},
          {"chat_x_chat", "/snap/bin/chat_x", "snap chat_x", "X-SnapInstanceName=chat_x\n"}},
         {},
         {}},
    };
}

TEST(Programs, OfEntriesAndLaunchers) {
    for (const auto& [what, apps, paths, others] : cases()) {
        const store::TemporaryDirectory root;
        build(others, root.path());
        for (const std::string& path : paths) build({{path, program}}, root.path());
        std::vector<std::string> asked;
        for (const App& app : apps) {
            if (!app.exec.empty()) build({entry(app.id, app.exec, app.more)}, root.path());
            if (!app.told.empty()) asked.push_back(app.id);
        }
        const engine::Programs found = engine::findPrograms(asked, root.path());
        EXPECT_EQ(found.known.size() + found.unknown.size(), asked.size()) << what;
        for (const App& app : apps)
            EXPECT_EQ(app.told.empty() ? "" : told(found, app.id), app.told) << what << ": " << app.id;
    }
}

TEST(Programs, APipeInAProgramsPlaceIsNotOpened) {
    const store::TemporaryDirectory root;
    build({entry("pipe", "/opt/pipe-of-nobody")}, root.path());
    fs::create_directories(root / "opt");
    ASSERT_EQ(::mkfifo((root / "opt/pipe-of-nobody").c_str(), 0700), 0);
    EXPECT_EQ(told(engine::findPrograms({"pipe"}, root.path()), "pipe"), "? /opt/pipe-of-nobody is not installed");
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
            words.reserve(arguments.size() + 1);
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
        std::string command = store::contentOf(folder / "cmdline");
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
