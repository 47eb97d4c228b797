package sample;

public class Unwilling {
    public Unwilling() {
        throw new IllegalArgumentException("not today");
    }
}
