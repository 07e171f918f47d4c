/* SPDX-License-Identifier: MIT */
#pragma once

#import <Foundation/Foundation.h>

@protocol AVMDeviceStatus <NSObject>
- (NSString*)deviceFamilyName;
@end

@interface AVMServiceInfo : NSObject {
 @public
  struct QZVMServiceInfo* handle_;
}
+ (AVMServiceInfo*)serviceInfoWithSpec:(NSDictionary*)spec;
+ (AVMServiceInfo*)serviceInfoWithURI:(NSString*)uri;
@end

@interface AVMStoreItem : NSObject {
 @public
  struct QZVMItem* handle_;
}
- (id)representedObject;
@end

@interface AVMDataStore : NSObject {
 @public
  struct QZVMStore* handle_;
}
- (AVMStoreItem*)itemForKey:(NSString*)key;
@end

@interface AVMDataStoreFactory : NSObject
+ (AVMDataStoreFactory*)defaultSystemDataStoreFactory;
- (AVMDataStore*)registeredStoreForServiceInfo:(AVMServiceInfo*)info;
@end

@interface AVMCoreFactory : NSObject
+ (AVMCoreFactory*)newStatusFactory;
- (id)interfaceForProtocol:(Protocol*)protocol serviceInfo:(AVMServiceInfo*)info;
@end
