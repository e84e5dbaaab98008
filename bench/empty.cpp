// A program that does nothing: its start is the least that any program's can cost.

int main() {}
