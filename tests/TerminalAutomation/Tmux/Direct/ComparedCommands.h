// What both ways of asking tmux are compared by: some 280 commands, of which a good third are refused.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velmora::testing {

struct ComparedCommand {
  enum class Kind {
    reads,    ///< Given to the twins, and once more both ways to the first of them.
    changes,  ///< Given to the twins: to one by the program, to the other directly.
    differs,  ///< Reads what no two servers share: given both ways to one of them.
    awaited,  ///< Not compared: repeated at both until `input` is in the output.
  };

  Kind kind;
  std::vector<std::string> arguments;
  std::optional<std::string> input{};
};

class ComparedCommands {
 public:
  using Arguments = std::vector<std::string>;

  static std::vector<ComparedCommand> all() {
    ComparedCommands commands;
    commands.prepare();
    commands.read();
    commands.formats();
    commands.captures();
    commands.refusals();
    commands.sizes();
    commands.buffers();
    commands.typing();
    commands.jobs();
    commands.changes();
    commands.ends();
    return std::move(commands.list_);
  }

 private:
  using Kind = ComparedCommand::Kind;

  void reads(Arguments arguments) { list_.push_back({Kind::reads, std::move(arguments)}); }
  void changes(Arguments arguments, std::optional<std::string> input = std::nullopt) {
    list_.push_back({Kind::changes, std::move(arguments), std::move(input)});
  }
  void differs(Arguments arguments) { list_.push_back({Kind::differs, std::move(arguments)}); }
  void await(const std::string& pane, const std::string& text) {
    list_.push_back({Kind::awaited, {"capture-pane", "-p", "-t", pane}, text});
  }

  static std::string paneFields() {
    return "#{session_name}|#{window_index}|#{pane_index}|#{pane_id}|#{pane_width}x#{pane_height}|#{pane_active}|"
           "#{pane_dead}|#{pane_in_mode}|#{cursor_x},#{cursor_y}|#{history_size}|#{window_layout}|#{pane_title}";
  }

  void prepare() {
    changes({"new-session", "-d", "-s", "b", "-n", "other", "-x", "80", "-y", "24", "-P", "-F",
             "#{session_name} #{pane_id}", "cat"});
    changes({"new-window", "-d", "-t", "main:", "-n", "long", "seq -f 'line %06.0f of many' 3000; exec cat"});
    changes({"new-window", "-d", "-t", "main:", "-n", "words",
             "printf '한국어 \\033[31mred\\033[0m e\\314\\201 👩‍👩‍👧 end\\n'; exec cat"});
    changes({"split-window", "-d", "-h", "-t", "main:0", "exec cat"});
    changes({"split-window", "-d", "-v", "-t", "main:0.1", "-P", "-F", "#{pane_id}", "exec cat"});
    await("main:long", "line 003000");
    await("main:words", "end");
  }

  void read() {
    for (const char* name : {"list-sessions", "list-clients", "list-buffers", "list-commands", "list-keys"})
      reads({name});
    reads({"list-windows", "-a", "-F", "#{window_id} #{window_layout}"});
    reads({"list-keys", "-T", "copy-mode"});
    reads({"list-panes", "-a", "-F", paneFields()});
    reads({"list-panes", "-s", "-t", "main", "-F", paneFields()});
    reads({"list-panes", "-a", "-f", "#{==:#{pane_id},%1}", "-F", "R\t#{pane_id}\t#{window_name}"});
    reads({"list-panes", "-a", "-F", "R\t#{pane_id}", ";", "list-clients", "-F", "C\t#{client_name}"});
    differs({"list-panes", "-a"});
    differs({"list-panes", "-a", "-F",
             "#{pid} #{start_time} #{version} #{pane_tty} #{pane_pid} #{host} #{client_name}"});
    differs({"list-sessions", "-F", "#{session_id} #{session_created} #{session_activity} #{session_path}"});
    differs({"display-message", "-p",
             "#{client_termname} #{client_utf8} #{client_width} #{client_flags} #{client_tty}"});
    for (const char* scope : {"-g", "-gw", "-s"}) reads({"show-options", scope});
    reads({"show-options", "-gqv", "destroy-unattached"});
    reads({"show-options", "-gv", "history-limit"});
    reads({"show-hooks", "-g"});
    reads({"show-environment", "-t", "main"});
    reads({"show-environment", "-g", "HOME"});
    for (const char* session : {"main", "none", "=main", "=none", "$0", "$99"})
      reads({"has-session", "-t", session});
    for (const char* pane : {"%0", "%1", "%2", "%99", "main:long", "main:words", "main:0.0", "b:", "=b:",
                             "@1", "$0", "%x", "", "main:none", "{last}", "{top}", "!", "main:99"}) {
      reads({"display-message", "-p", "-t", pane, "#{pane_id} #{window_name} #{session_name}"});
    }
  }

  void formats() {
    std::string control;
    for (char code = 1; code < 32; ++code) control += code == '\n' ? '\t' : code;
    for (const std::string& text : {std::string("plain"),
                                    std::string(),
                                    std::string("#{l:a;b}"),
                                    std::string("ends with ;"),
                                    std::string("a;b"),
                                    std::string("x\\;"),
                                    std::string("한국어 👩‍👩‍👧 e\u0301"),
                                    std::string("tab\there"),
                                    std::string("#{?0,yes,no}"),
                                    std::string("#{n:abc}"),
                                    std::string("#{=5:abcdefgh}"),
                                    std::string("%H%%"),
                                    std::string("#{e|+|:1,2}"),
                                    std::string("#[fg=red]styled"),
                                    std::string("'a' \"b\" $HOME ~ \\"),
                                    std::string("\\"),
                                    std::string("line\nbreak"),
                                    std::string("#{"),
                                    std::string("}"),
                                    std::string("\xff\xfe\x80"),
                                    std::string("#{W:#{window_name} }"),
                                    std::string("#{S:#{session_name} }"),
                                    std::string("#{P:#{pane_id} }"),
                                    std::string("#{m:*i*,main}"),
                                    std::string("#{s/a/b/:banana}"),
                                    std::string("#{q:a b}"),
                                    std::string("#{d:/a/b} #{b:/a/b}"),
                                    control,
                                    std::string(15'000, 'x')}) {
      reads({"display-message", "-p", "-t", "%0", text});
    }
  }

  void captures() {
    // How the cells of a pane have grown depends on how its output came, and no twin has it the same: -e, -J
    // and -N show it.
    for (const Arguments& options :
         {Arguments{"-p"}, Arguments{"-p", "-C"}, Arguments{"-p", "-P"}, Arguments{"-p", "-S", "-"},
          Arguments{"-p", "-S", "-2000"}, Arguments{"-p", "-S", "5", "-E", "10"},
          Arguments{"-p", "-S", "-5", "-E", "-1"}, Arguments{"-p", "-S", "x"}, Arguments{"-p", "-a"},
          Arguments{"-p", "-a", "-q"}, Arguments{"-p", "-S", "9999"}}) {
      for (const char* pane : {"main:long", "main:words"})
        reads(joined({"capture-pane"}, options, {"-t", pane}));
    }
    for (const Arguments& options :
         {Arguments{"-p", "-J"}, Arguments{"-p", "-e"}, Arguments{"-p", "-N"},
          Arguments{"-p", "-J", "-S", "-"}, Arguments{"-p", "-e", "-N", "-S", "-"}}) {
      for (const char* pane : {"main:long", "main:words"})
        differs(joined({"capture-pane"}, options, {"-t", pane}));
    }
    differs({"display-message", "-p", "-t", "main:long", "PANE", ";", "capture-pane", "-p", "-J", "-S", "-",
             "-t", "main:long"});
    reads({"capture-pane", "-p", "-t", "main:long", ";", "capture-pane", "-p", "-t", "main:words", ";",
           "list-buffers"});
    reads({"capture-pane", "-p", "-t", "none"});
  }

  void refusals() {
    for (const Arguments& arguments :
         std::vector<Arguments>{{"bogus"},
                                {"list"},
                                {"display-message", "-Z"},
                                {"list-panes", "-t"},
                                {"list-panes", "extra"},
                                {"kill-pane", "-t", "%99"},
                                {"kill-window", "-t", "@99"},
                                {"kill-session", "-t", "none"},
                                {"set-option", "-g", "none", "1"},
                                {"set-option", "-g", "history-limit", "minus"},
                                {"set-option"},
                                {"set-option", "-g", "status", "maybe"},
                                {"show-options", "-g", "none"},
                                {"show-buffer", "-b", "none"},
                                {"show-buffer"},
                                {"delete-buffer", "-b", "none"},
                                {"paste-buffer", "-b", "none", "-t", "%0"},
                                {"select-layout", "-t", "main:0", "bad"},
                                {"bind-key"},
                                {"unbind-key", "-T", "none", "x"},
                                {"attach-session", "-t", "main"},
                                {"attach-session", "-t", "none"},
                                {"new-session", "-s", "z"},
                                {"new-session", "-d", "-s", "main"},
                                {"new-session", "-d", "-s", "x", "-t", "none:1"},
                                {"switch-client", "-t", "main"},
                                {"switch-client", "-c", "none", "-t", "main"},
                                {"detach-client"},
                                {"detach-client", "-t", "none"},
                                {"refresh-client"},
                                {"suspend-client"},
                                {"lock-client"},
                                {"lock-session"},
                                {"display-panes"},
                                {"command-prompt"},
                                {"confirm-before", "kill-server"},
                                {"choose-tree", "-t", "none"},
                                {"choose-buffer", "-t", "none"},
                                {"copy-mode", "-t", "none"},
                                {"clock-mode", "-t", "none"},
                                {"send-keys", "-t", "none", "x"},
                                {"send-keys", "-X", "-t", "%0", "cancel"},
                                {"send-keys", "-N", "x", "-t", "%0", "Up"},
                                {"if-shell"},
                                {"if-shell", "-F", "1"},
                                {"if-shell", "-F", "-t", "none", "1", "list-panes"},
                                {"if-shell", "-F", "1", "bogus"},
                                {"if-shell", "-F", "1", "list-panes -t none"},
                                {"resize-pane", "-t", "%0", "-x", "big"},
                                {"resize-window", "-t", "main:0", "-x", "0"},
                                {"move-window", "-s", "main:99", "-t", "b:"},
                                {"move-pane", "-s", "%0", "-t", "%0"},
                                {"link-window", "-s", "main:0", "-t", "main:1"},
                                {"unlink-window", "-t", "main:0"},
                                {"rename-session", "-t", "main", "b"},
                                {"rename-window"},
                                {"swap-pane", "-s", "%0", "-t", "%98"},
                                {"swap-window", "-s", "main:0", "-t", "main:98"},
                                {"break-pane", "-s", "none"},
                                {"join-pane", "-s", "none"},
                                {"wait-for", "-U", "none"},
                                {"wait-for"},
                                {"source-file"},
                                {"source-file", "/none/at/all"},
                                {"run-shell", "exit 3"},
                                {"display-popup"},
                                {"display-menu"},
                                {"last-window", "-t", "b"},
                                {"next-window", "-t", "b"},
                                {"previous-window", "-t", "b"},
                                {"last-pane", "-t", "b"},
                                {"select-pane", "-t", "b", "-L"},
                                {"select-window", "-t", "none"},
                                {"pipe-pane", "-t", "none"},
                                {"respawn-pane", "-t", "%0"},
                                {"respawn-window", "-t", "main:0"},
                                {"set-environment"},
                                {"show-environment", "-t", "main", "NONE"},
                                {"set-hook", "-g", "none", "list-panes"},
                                {"set-buffer"},
                                {"save-buffer", "-"},
                                {"load-buffer"},
                                {"server-access", "-a", "root"},
                                {"show-messages", "-T"},
                                {"list-keys", "-T", "none"},
                                {"list-panes", ";", "bogus"},
                                {"list-panes", "-t", "none", ";", "list-sessions"},
                                {"list-sessions", ";", "list-panes", "-t", "none", ";", "list-windows"},
                                {";"},
                                {""},
                                {";", "list-sessions"},
                                {"list-sessions", ";"},
                                {"list-sessions;"},
                                {"list-sessions\\;"},
                                {"{", "list-sessions", "}"}}) {
      changes(arguments);
    }
  }

  void sizes() {
    for (const std::size_t size : {16'000u, 16'330u, 16'340u})
      changes({"display-message", "-p", std::string(size, 'z')});
    changes({std::string(16'000, 'x')});
    changes(Arguments(3'000, "a"));
    changes(joined({"display-message", "-p"}, Arguments(40, "q"), {}));
    Arguments many;
    for (int count = 0; count < 200; ++count) many.insert(many.end(), {"list-sessions", ";"});
    many.push_back("list-sessions");
    reads(many);
  }

  void buffers() {
    std::string everyByte;
    for (int code = 0; code < 256; ++code) everyByte += static_cast<char>(code);
    changes({"load-buffer", "-b", "one", "-"}, "hello");
    reads({"show-buffer", "-b", "one"});
    changes({"load-buffer", "-b", "empty", "-"}, "");
    changes({"load-buffer", "-b", "nothing", "-"});
    reads({"show-buffer", "-b", "empty"});
    changes({"load-buffer", "-b", "bytes", "-"}, everyByte);
    reads({"show-buffer", "-b", "bytes"});
    reads({"save-buffer", "-b", "bytes", "-"});
    for (const std::size_t size : {16'363u, 16'364u, 16'365u, 32'728u, 65'536u, 300'000u, 3'000'000u}) {
      const std::string name = "b" + std::to_string(size);
      changes({"load-buffer", "-b", name, "-"}, std::string(size, 'y'));
      reads({"show-buffer", "-b", name});
      reads({"list-buffers", "-F", "#{buffer_name} #{buffer_size}"});
    }
    changes({"load-buffer", "-b", "x", "-", ";", "load-buffer", "-b", "y", "-"}, "given once");
    reads({"show-buffer", "-b", "x", ";", "show-buffer", "-b", "x"});
    changes({"set-buffer", "-b", "s", "text\\;"});
    changes({"set-buffer", "-b", "s", "-a", "--", "-- more"});
    reads({"show-buffer", "-b", "s"});
    changes({"delete-buffer", "-b", "s"});
    changes({"source-file", "-"}, "set -g @one 1\nset -g @two 'a b'\n");
    reads({"show-options", "-g", "@two"});
    changes({"source-file", "-"}, "bogus-command\n");
    changes({"source-file", "-"}, "display-message -p from-the-file\n");
    changes({"list-sessions"}, "input that nobody reads");
  }

  void typing() {
    const std::string paste =
        "copy-mode -q -t %0 ; paste-buffer -d -p -r -b p -t %0 ; paste-buffer -d -r -b pr -t %0";
    const std::string refuse = "delete-buffer -b p ; delete-buffer -b pr ; display-message -p STALE";
    for (const char* condition : {"#{?pane_dead,0,#{==:#{window_id},@0}}", "#{==:#{window_id},@77}"}) {
      changes({"load-buffer", "-b", "p", "-", ";", "set-buffer", "-b", "pr", "\r", ";", "if-shell", "-F",
               "-t", "%0", condition, paste, refuse},
              "pasted '한국어' ; $y");
    }
    await("%0", "pasted");
    changes({"send-keys", "-t", "%0", "-l", "typed 한국"});
    changes({"send-keys", "-t", "%0", "Enter"});
    changes({"load-buffer", "-b", "k", "-", ";", "if-shell", "-F", "-t", "%0", "1",
             "delete-buffer -b k ; send-keys -N 3 -t %0 Up", "delete-buffer -b k"},
            "x");
    changes({"send-keys", "-t", "%0", "-l", "last"});
    changes({"send-keys", "-t", "%0", "Enter"});
    await("%0", "last");
    reads({"capture-pane", "-p", "-t", "%0"});
    reads({"list-buffers", "-F", "#{buffer_name}"});
  }

  void jobs() {
    changes({"run-shell", "echo out; echo error >&2"});
    changes({"run-shell", "exit 4"});
    for (const char* condition : {"true", "false"}) {
      changes({"if-shell", condition, "display-message -p yes", "display-message -p no"});
    }
    changes({"run-shell", "-b", "true"});
    changes({"run-shell", "pwd"});
    changes({"wait-for", "-S", "channel"});
    changes({"wait-for", "channel"});
    changes({"wait-for", "-L", "lock"});
    changes({"wait-for", "-U", "lock"});
  }

  void changes() {
    for (const Arguments& arguments : std::vector<Arguments>{
             {"rename-window", "-t", "main:0", "first"},
             {"rename-session", "-t", "b", "bb"},
             {"select-pane", "-t", "%0", "-T", "title 한"},
             {"resize-pane", "-t", "%0", "-x", "30"},
             {"swap-pane", "-s", "%0", "-t", "%1"},
             {"break-pane", "-d", "-s", "%1", "-P", "-F", "#{window_index}"},
             {"join-pane", "-d", "-s", "%1", "-t", "main:first"},
             {"select-layout", "-t", "main:first", "tiled"},
             {"move-window", "-s", "main:words", "-t", "main:9"},
             {"link-window", "-s", "main:9", "-t", "bb:5"},
             {"unlink-window", "-t", "bb:5"},
             {"copy-mode", "-t", "%0"},
             {"copy-mode", "-q", "-t", "%0"},
             {"clock-mode", "-t", "%0"},
             {"copy-mode", "-q", "-t", "%0"},
             {"select-window", "-t", "main:9"},
             {"select-window", "-t", "$0:@0", ";", "select-pane", "-t", "%0"},
             {"set-option", "-t", "main", "status", "off"},
             {"set-option", "-u", "-t", "main", "status"},
             {"set-environment", "-t", "main", "X", "y"},
             {"set-hook", "-g", "after-new-window", "set -g @hook yes"},
             {"new-window", "-d", "-t", "bb:", "-P", "-F", "#{pane_id} #{window_index}", "exec cat"},
             {"kill-window", "-t", "bb:1"},
             {"bind-key", "-T", "root", "F9", "display-message", "x"},
             {"unbind-key", "-T", "root", "F9"},
             {"set-option", "-g", "remain-on-exit", "on"},
             {"clear-history", "-t", "main:long"},
             {"pipe-pane", "-t", "%0", "cat >/dev/null"},
             {"pipe-pane", "-t", "%0"},
             {"select-pane", "-d", "-t", "%0"},
             {"select-pane", "-e", "-t", "%0"},
             {"new-session", "-d", "-t", "main", "-s", "group"},
             {"kill-session", "-t", "group"},
             {"set-option", "-g", "status-left", "#{pane_id} 한"}}) {
      changes(arguments);
    }
    reads({"list-panes", "-a", "-F", paneFields()});
    reads({"show-options", "-g"});
    reads({"show-environment", "-t", "main"});
    reads({"show-hooks", "-g"});
    differs({"capture-pane", "-p", "-S", "-", "-t", "main:long"});
  }

  void ends() {
    changes({"kill-pane", "-t", "%1"});
    changes({"kill-session", "-t", "bb"});
    changes({"kill-server"});
  }

  static Arguments joined(Arguments first, const Arguments& second, const Arguments& third) {
    first.insert(first.end(), second.begin(), second.end());
    first.insert(first.end(), third.begin(), third.end());
    return first;
  }

  std::vector<ComparedCommand> list_;
};

}  // namespace velmora::testing
