// refuses: 'state' is only available on iOS 12.0 or newer
#import <StoreKit/StoreKit.h>
long probe(SKDownload* download) { return [download state]; }
