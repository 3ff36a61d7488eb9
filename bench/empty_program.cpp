/// What every program of these libraries takes before it does anything.
int main() {}
