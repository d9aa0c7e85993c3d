#include "TslApp.h"

int main(int argc, char *argv[]) {
    TslApp app;
    return app.start(argc, argv);
}
