// See Foundation/Foundation.h. Sparkle stands in no public reference; its names here are those of its
// documentation.
#pragma once

#import <Foundation/Foundation.h>

@interface SPUUpdater : NSObject
- (BOOL)automaticallyChecksForUpdates;
- (void)setAutomaticallyChecksForUpdates:(BOOL)automaticallyChecksForUpdates;
- (NSDate*)lastUpdateCheckDate;
@end

@interface SPUStandardUpdaterController : NSObject
- (instancetype)initWithStartingUpdater:(BOOL)startUpdater
                        updaterDelegate:(id)updaterDelegate
                     userDriverDelegate:(id)userDriverDelegate;
- (SPUUpdater*)updater;
- (void)checkForUpdates:(id)sender;
@end
