#include "shell/qt/application.h"

int main(int argc, char** argv) { return velorin::RunApplication(argc, argv); }
