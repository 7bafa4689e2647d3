// The library that a module depends on.
extern "C" __attribute__((visibility("default"))) int Needed();

int Needed() {
    return ANSWER;
}
