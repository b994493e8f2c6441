// The process that holds the compiled AppleScript. The bridge starts it and asks it over its standard input
// and output; it ends with its input. AppleScript gets what it needs here and nowhere else: the main thread
// of a program with an application object and a running event loop.

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "MacPlatform/Application.h"
#include "TerminalAutomation/AppleScript/ScriptFrames.h"

@interface RequestReader : NSObject {
  std::unique_ptr<velmora::ScriptEngine> engine_;
  int replies_;
}
@end

@implementation RequestReader

- (instancetype)initWithReplies:(int)replies {
  self = [super init];
  engine_ = velmora::systemScriptEngine();
  replies_ = replies;
  return self;
}

- (void)readRequest:(NSNotification*)notification {
  if (!velmora::answerScriptRequest(*engine_, STDIN_FILENO, replies_)) std::exit(EXIT_SUCCESS);
  [static_cast<NSFileHandle*>([notification object]) waitForDataInBackgroundAndNotify];
}

@end

int main() {
  ::signal(SIGPIPE, SIG_IGN);
  // What a library prints must not stand between the replies.
  const int replies = ::dup(STDOUT_FILENO);
  ::dup2(STDERR_FILENO, STDOUT_FILENO);
  @autoreleasepool {
    NSApplication* const application = [NSApplication sharedApplication];
    [application setActivationPolicy:NSApplicationActivationPolicyProhibited];  // no icon, no windows
    velmora::mac::stayAwake("the bridge waits for answers");
    RequestReader* const reader = [[RequestReader alloc] initWithReplies:replies];
    NSFileHandle* const input = [NSFileHandle fileHandleWithStandardInput];
    [[NSNotificationCenter defaultCenter] addObserver:reader
                                             selector:@selector(readRequest:)
                                                 name:NSFileHandleDataAvailableNotification
                                               object:input];
    [input waitForDataInBackgroundAndNotify];
    [application run];
  }
}
