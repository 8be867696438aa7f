#pragma once

// NSAutoreleasePool of the Foundation reference

__attribute__((objc_root_class))
@interface NSObject
+ (instancetype)alloc;
- (instancetype)init;
- (oneway void)release;
@end

@interface NSAutoreleasePool : NSObject
@end
