#include "app/VellumryApp.h"

int main(int argc, char** argv)
{
    return vellumry::VellumryApp::run(argc, argv);
}
