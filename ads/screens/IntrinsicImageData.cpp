// Written by ads/screens/make_images; do not edit.
#include "ads/screens/IntrinsicImageData.h"

namespace valdren {

const char* const kCloseButtonPNG =
    "iVBORw0KGgoAAAANSUhEUgAAADIAAAAyCAYAAAAeP4ixAAADcUlEQVR42t1aPWvbQBgO1I0hhYQUuhi7aJGKsSB2OjgQ"
    "0jFkMnRNl9Af0LU/IB3cKaWDIfVa0sWTwaNHd/Gaju7YxTjgxQUv6j3mUbhcbd35KwnvwQNCunvvfXTv1520sbH69kQh"
    "rfBMYVthh9jmvTT7PMq2pfBcIaPgKfgKeYWCQkgUeM9nnwzHbD208k8VdhWyCoHCnkK5VCqdVKvVD41G43O73a53Op3v"
    "AK5xD8/QB305JqCMXcq8t5bim/T4pg+gXLfbbQwGg9+RY0NfjMFYyKAsj7JT6yYBO89x0sNWq/V1HuWTSEEWZFJ2jnOt"
    "xYFf0AzKMJHhcPhnlmLX17+iZrMZ1ev16OLiywS4xj08m9UgE7JpdgHnXFlg2KRjhpVK5W2v1/tpKjAa/Y2urn5EZ2fv"
    "I99/FWWzLxOBPuiLMRhrNsyBubg6GeqwVEvTEYu1Wu3jaDS60Sfs9/vR+fknJ+WTSEEGZN19OaMbzIm5qUN6mZWAgH0s"
    "t/nWYCrLEJhGCDLNRlPbpy6bi/gElrRoksCbg1msioAJyDZXh2SK1Gkun4GThVha04mPjt6sjUQMzGEGBZpZSN2cQ2wA"
    "Z9N9AoJLpddrJxEDc+lkoAsDQOASmlOM4WU9OmGp72Mlpq2MbmbQiaE5Z0uayKqh6Rfr9AkXn5niLyF1nVk7oUQ41JMd"
    "IslDkYihRzPoxgrAm1WboWgLUSroJmULscfHJ9Hl5bcJcO2q3DzjoINuYixnQur8X0OcPtBrJyQqmzLj8fh2Alyfnr6z"
    "kkAfc5yNDHTRazMWmtlp+4kAlahedthWA2/TbDYyJom4QZZtVfRyhlVzYO5n4Dh7KKvjjqiDbG92GpEkMrNIuBABoFPc"
    "oCv3M3ecHhmzrJuVS6QyTSuJTBIJF9MyIxjNq0zdb8sRD7s2XbhrHWVTEM9d+rjWY3rjTtOLyxZUlb7uH8io84RHm6Kr"
    "IBFDz/b0Ez+ujHGykdeTIDZA88b6JDKrIgFANyM55slhUrcUcDiwbBJ0JbMoCTM5QmeezkxqL5w5hTjpiDtga7poFraR"
    "WYYEAN3iBp2ZGHdEERFjWmKcXUz4FZMQxZQooopGMWW8mI2VqK2umMMHMcdBog7oxByZijrEFvVZQcyHHlGf3kR9DBX1"
    "eVrUDwPifuEQ9VONuN+cHtWPZ/8A5+tOIoA+vhoAAAAASUVORK5CYII=";

const char* const kBrowserForwardButtonPNG =
    "iVBORw0KGgoAAAANSUhEUgAAADYAAAA2CAYAAACMRWrdAAAAdElEQVR42u3ZwQmAMBBFwRSeKtJdqlk95CCiN0H9zIMt"
    "YGDJIduaJEnKrar6PnNNT0KdGwmwWdeNVNi/cTerGIMbcHBwcHBwcHBwX8L1VNwEs4oeDygoKCgoKCiol1CZX9zJR4nY"
    "M1Lm4e+AyzrVSpKkZ9sAJy+NG4aR6AEAAAAASUVORK5CYII=";

const char* const kBrowserBackButtonPNG =
    "iVBORw0KGgoAAAANSUhEUgAAADYAAAA2CAYAAACMRWrdAAAAe0lEQVR42u3ZwQmEUAxFUQtPFXb3q/mj4EpldJvnuZAC"
    "DoRssiySJEnn5py1zTimUlDrvFaJqL2RiOoLe0D1XMUXqBUKCgoKCgoK6puoikMdsBGHSodlrmLs8YCDg4ODg4ODa42r"
    "VFzfb8sDrjfsDy7mq5n3qpUkSff9AL5TjRvNj1t7AAAAAElFTkSuQmCC";

}  // namespace valdren
