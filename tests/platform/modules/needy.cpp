// A module that depends on a library beside it.
extern "C" int Needed();
extern "C" __attribute__((visibility("default"))) int Answer();

int Answer() {
    return Needed();
}
