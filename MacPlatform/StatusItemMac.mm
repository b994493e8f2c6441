#import <AppKit/AppKit.h>

#include "MacPlatform/FoundationText.hh"
#include "MacPlatform/StatusItem.h"

namespace velmora::mac {

namespace {

class SystemStatusItem final : public StatusItem {
 public:
  SystemStatusItem(const std::string& toolTip, NSMenu* menu) {
    @autoreleasepool {
      [item_ setMenu:menu];
      [[item_ button] setToolTip:stringOf(toolTip)];
    }
  }

  ~SystemStatusItem() override {
    @autoreleasepool {
      [[NSStatusBar systemStatusBar] removeStatusItem:item_];
    }
  }

  void setImage(const std::string& png) override {
    @autoreleasepool {
      NSImage* const image = [[NSImage alloc] initWithData:[NSData dataWithBytes:png.data()
                                                                          length:png.size()]];
      [image setSize:NSSize{statusImageSize, statusImageSize}];
      [image setTemplate:YES];
      [[item_ button] setImage:image];
    }
  }

 private:
  // The menu bar does not own it.
  NSStatusItem* const item_ = [[NSStatusBar systemStatusBar] statusItemWithLength:NSSquareStatusItemLength];
};

}  // namespace

std::unique_ptr<StatusItem> makeStatusItem(const std::string& toolTip, void* menu) {
  return std::make_unique<SystemStatusItem>(toolTip, (__bridge NSMenu*)menu);
}

}  // namespace velmora::mac
