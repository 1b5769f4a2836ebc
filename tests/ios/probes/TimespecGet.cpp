// device refuses: 'timespec_get' is only available on iOS 13.0 or newer
#include <time.h>
int probe(timespec* now) { return timespec_get(now, TIME_UTC); }
