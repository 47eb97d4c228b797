package sample;

public class Secretive {
    private Secretive() {}
}
