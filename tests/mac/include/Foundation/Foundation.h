#pragma once

// Minimal declarations for MacCocoa.mm, as in Apple's Foundation documentation.

__attribute__((objc_root_class))
@interface NSObject
+ (instancetype)alloc;
- (instancetype)init;
- (oneway void)release;
@end

@interface NSAutoreleasePool : NSObject
@end
