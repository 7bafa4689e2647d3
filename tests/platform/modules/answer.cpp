// A module with a name that its twin has too: each must find its own.
extern "C" __attribute__((visibility("default"))) int Own();
extern "C" __attribute__((visibility("default"))) int Answer();

int Own() {
    return ANSWER;
}
int Answer() {
    return Own();
}
